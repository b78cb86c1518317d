#include <yxdb/YxDbDatabase.h>

#include "host/model/state/HostAccess.h"
#include "host/src/HostAnswers.h"
#include "host/src/yxdb/ObjectData.h"

using holdfast::hostCall;

YxDbDatabase::YxDbDatabase() : m_data(std::make_unique<YxDbDatabaseData>()) {
    m_data->ucsX = m_data->paperUcsX = YxGeVector3d(1.0, 0.0, 0.0);
    m_data->ucsY = m_data->paperUcsY = YxGeVector3d(0.0, 1.0, 0.0);
}

YxDbDatabase::~YxDbDatabase() {
    m_data->isClosing = true;
    m_data->stubs.clear();
}

YxGeVector3d YxDbDatabase::ucsxdir() const {
    hostCall("YxDbDatabase::ucsxdir", nullptr);
    return m_data->ucsX;
}

YxGeVector3d YxDbDatabase::ucsydir() const {
    hostCall("YxDbDatabase::ucsydir", nullptr);
    return m_data->ucsY;
}

YxGeVector3d YxDbDatabase::pucsxdir() const {
    hostCall("YxDbDatabase::pucsxdir", nullptr);
    return m_data->paperUcsX;
}

YxGeVector3d YxDbDatabase::pucsydir() const {
    hostCall("YxDbDatabase::pucsydir", nullptr);
    return m_data->paperUcsY;
}

bool YxDbDatabase::tilemode() const {
    hostCall("YxDbDatabase::tilemode", nullptr);
    return m_data->tilemode;
}

YxDbObjectId YxDbDatabase::currentSpaceId() const {
    const auto fault = hostCall("YxDbDatabase::currentSpaceId", nullptr);
    return fault ? holdfast::answeredId(fault) : m_data->currentSpace;
}
