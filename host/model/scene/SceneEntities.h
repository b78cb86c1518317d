#pragma once

#include <memory>
#include <string>
#include <string_view>

#include <yxdb/YxDbEntity.h>
#include <yxdb/YxDbPolyline.h>

#include "host/model/scene/SceneStatement.h"

namespace holdfast {

// The statements that make entities, read and printed. What follows kind and name is the entity's own form.

bool isEntityKind(std::string_view word);
/// Reads what follows the name. Data that makes no entity is refused with std::invalid_argument.
std::unique_ptr<YxDbEntity> readEntity(std::string_view kind, SceneStatement& statement);

/// "line a 0,0 10,0": reads back to an equal entity.
std::string entityText(const std::string& name, const YxDbEntity& entity);
/// The vertices of a polyline as its statement has them: "0,0#11 10,0#12^0.5 closed".
std::string verticesText(const YxDbPolyline& polyline);

}  // namespace holdfast
