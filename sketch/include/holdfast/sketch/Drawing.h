#pragma once

#include "holdfast/document/Document.h"
#include "holdfast/document/checks/DocumentCheck.h"
#include "holdfast/document/text/DrawingError.h"
#include "holdfast/editing/fates/Freedom.h"

/// The sketch engine as other programs use it: drawings as values, files, edits, and what edits do to constraints.
namespace holdfast::sketch {

// A drawing as plain values.
using document::Constraint;
using document::Document;
using document::Entity;
using document::Place;
using document::Plane;
using document::Source;
using geometry::ConstraintType;
using geometry::PlaceKind;

// What kinds of constraints there are: names, what each may join, whether it has a value.
using geometry::constraintKinds;
using geometry::ConstraintTraits;
using geometry::traitsOf;

// The shapes of its entities.
using geometry::ArcShape;
using geometry::CircleShape;
using geometry::EllipseShape;
using geometry::EllipticalArcShape;
using geometry::LineShape;
using geometry::PointShape;
using geometry::PolylineShape;
using geometry::RayShape;
using geometry::Shape;
using geometry::SplineShape;
using geometry::TextShape;
using geometry::Vec2;
using geometry::XlineShape;

// What is wrong with it, and how much of it the constraints leave open.
using document::checkDocument;
using document::DrawingError;
using editing::degreesOfFreedom;

}  // namespace holdfast::sketch
