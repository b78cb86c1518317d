#pragma once

class YxDbEntity;
class YxGeMatrix3d;

/// A drawing sink with a stack of transforms.
class YxGiWorldGeometry {
public:
    virtual ~YxGiWorldGeometry();
    virtual void pushModelTransform(const YxGeMatrix3d& matrix) = 0;
    virtual void popModelTransform() = 0;
    virtual bool draw(const YxDbEntity* entity) = 0;
};

class YxGiWorldDraw {
public:
    virtual ~YxGiWorldDraw();
    virtual YxGiWorldGeometry& geometry() const = 0;
};
