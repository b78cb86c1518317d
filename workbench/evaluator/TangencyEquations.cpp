#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>

#include "workbench/evaluator/EquationBuilder.h"
#include "workbench/evaluator/SplineBasis.h"

/// Tangent in all its forms, perpendicular at a place, and curvature-continuous joints.
namespace holdfast {

namespace {

/// A curve with a point of it given by a parameter that is an unknown of its own.
struct Contact {
    Operand jet;
    int param = -1;
    double first = 0.0, last = 1.0;
};

Contact contactOn(EquationBuilder& builder, CurveRef curve) {
    // A parameter is no geometry: it may run along the curve at little cost.
    constexpr double cheap = 1e-2;
    const double size = sizeOf(builder.figure(), curve, builder.size());
    if (auto ellipse = ellipseAt(builder.figure(), curve)) {
        const int param = builder.addContact(0.0, cheap * size);
        ellipse->kind = OperandKind::ellipseAt;
        ellipse->inputs.push_back(param);
        return {*ellipse, param, 0.0, 2 * std::numbers::pi};
    }
    const FigureEntity& entity = builder.figure().entities[static_cast<std::size_t>(curve.entity)];
    const SplineRange range = splineRange(builder.figure().splines[static_cast<std::size_t>(entity.spline)]);
    const int param = builder.addContact(range.first, cheap * size / (range.last - range.first));
    return {splineAt(builder.figure(), curve.entity, OperandKind::splineJet, param), param, range.first, range.last};
}

bool hasContacts(EquationBuilder& builder, CurveRef curve) {
    return ellipseAt(builder.figure(), curve).has_value() || isSplineCurve(builder.figure(), curve);
}

/// Finds where along the curves their contact is, at one of the two times.
class ContactSearch {
public:
    ContactSearch(EquationBuilder& builder, When when, Equation form, std::initializer_list<Operand> operands)
        : m_builder(builder), m_when(when) {
        m_set.splines = &builder.figure().splines;
        m_set.add(form, operands);
    }

    /// The nearest to touching among samples of all contacts.
    void sample(std::span<const Contact> contacts) {
        m_best = std::numeric_limits<double>::max();
        m_bestParams.assign(contacts.size(), 0.0);
        sampleFrom(contacts, 0);
        for (std::size_t i = 0; i < contacts.size(); ++i)
            m_builder.setContact(m_when, contacts[i].param, m_bestParams[i]);
    }

    /// Gauss-Newton steps in the contacts alone, as long as they help.
    void refine(std::span<const Contact> contacts) {
        constexpr int most = 50;
        double now = miss();
        for (int i = 0; i < most && now > 0.0; ++i) {
            const std::vector<double> before = params(contacts);
            const std::vector<double> step = newtonStep(contacts);
            bool hasImproved = false;
            for (double factor = 1.0; factor > 0.01 && !hasImproved; factor *= 0.5) {
                for (std::size_t k = 0; k < contacts.size(); ++k)
                    m_builder.setContact(m_when, contacts[k].param, before[k] + factor * step[k]);
                hasImproved = miss() < now;
            }
            if (!hasImproved) {
                for (std::size_t k = 0; k < contacts.size(); ++k)
                    m_builder.setContact(m_when, contacts[k].param, before[k]);
                return;
            }
            now = miss();
        }
    }

private:
    double miss() const {
        double sum = 0.0;
        for (const double row : residuals(m_set, m_set.equations.front(), m_builder.values(m_when)))
            sum += row * row;
        return sum;
    }

    void sampleFrom(std::span<const Contact> contacts, std::size_t which) {
        const int samples = contacts.size() == 1 ? 256 : 48;
        if (which == contacts.size()) {
            if (const double here = miss(); here < m_best) {
                m_best = here;
                m_bestParams = params(contacts);
            }
            return;
        }
        const Contact& contact = contacts[which];
        for (int i = 0; i <= samples; ++i) {
            m_builder.setContact(m_when, contact.param, contact.first + (contact.last - contact.first) * i / samples);
            sampleFrom(contacts, which + 1);
        }
    }

    std::vector<double> params(std::span<const Contact> contacts) const {
        std::vector<double> result;
        for (const Contact& contact : contacts)
            result.push_back(m_builder.values(m_when)[static_cast<std::size_t>(contact.param)]);
        return result;
    }

    /// Least squares over the rows, for one contact or two.
    std::vector<double> newtonStep(std::span<const Contact> contacts) const {
        const Equation& e = m_set.equations.front();
        std::vector<double> slopes;
        const auto rows = linearise(m_set, e, m_builder.values(m_when), slopes);
        const auto inputs = m_set.inputsOf(e);
        std::array<double, 2> g{};
        std::array<double, 3> h{};
        for (std::size_t row = 0; row < e.rows; ++row) {
            std::array<double, 2> by{};
            for (std::size_t k = 0; k < inputs.size(); ++k) {
                for (std::size_t c = 0; c < contacts.size(); ++c)
                    by[c] += inputs[k] == contacts[c].param ? slopes[row * inputs.size() + k] : 0.0;
            }
            g = {g[0] - by[0] * rows[row], g[1] - by[1] * rows[row]};
            h = {h[0] + by[0] * by[0], h[1] + by[0] * by[1], h[2] + by[1] * by[1]};
        }
        if (contacts.size() == 1)
            return {h[0] > 0.0 ? g[0] / h[0] : 0.0};
        const double determinant = h[0] * h[2] - h[1] * h[1];
        if (!(determinant > 1e-12 * h[0] * h[2]))
            return {h[0] > 0.0 ? g[0] / h[0] : 0.0, 0.0};
        return {(g[0] * h[2] - g[1] * h[1]) / determinant, (g[1] * h[0] - g[0] * h[1]) / determinant};
    }

    EquationBuilder& m_builder;
    When m_when;
    EquationSet m_set;
    double m_best = 0.0;
    std::vector<double> m_bestParams;
};

/// Puts contacts where the curves come closest to touching, at the reference and now.
void startContacts(EquationBuilder& builder, Equation form, std::initializer_list<Operand> operands,
                   std::initializer_list<Contact> contacts) {
    for (const When when : {When::reference, When::now}) {
        ContactSearch search(builder, when, form, operands);
        search.sample({contacts.begin(), contacts.size()});
        search.refine({contacts.begin(), contacts.size()});
    }
}

/// Curves that touch somewhere along a spline or an ellipse: the parameter of the contact is an unknown.
void addTouch(EquationBuilder& builder, CurveRef one, CurveRef two) {
    if (!hasContacts(builder, two))
        std::swap(one, two);
    Equation form = formOf(Kernel::curveTouch, 3);
    form.scale = turnScale(builder, one, two);
    const Contact contact = contactOn(builder, two);
    if (hasContacts(builder, one)) {
        const Contact first = contactOn(builder, one);
        startContacts(builder, form, {first.jet, contact.jet}, {first, contact});
        builder.add(form, {first.jet, contact.jet});
        return;
    }
    const auto line = lineAt(builder.figure(), one);
    form.kernel = line ? Kernel::lineTouch : Kernel::circleTouch;
    form.rows = 2;
    const Operand other = line ? *line : *circleAt(builder.figure(), one);
    startContacts(builder, form, {other, contact.jet}, {contact});
    builder.add(form, {other, contact.jet});
}

/// Distance of the line from the centre against the reach of a circle or ellipse, on the side where the curve is.
Equation lineTangentForm(EquationBuilder& builder, const Operand& line, Kernel kernel, const Operand& round) {
    Equation form = formOf(kernel);
    if (kernel == Kernel::lineCircle)
        form.mode = static_cast<std::uint8_t>(GapMode::outside);
    const double left = builder.residualAtReference(form, {line, round});
    form.sign = -1.0;
    const double right = builder.residualAtReference(form, {line, round});
    // Distance minus reach is nearer to 0 on the side where the curve is.
    form.sign = left >= right ? 1.0 : -1.0;
    return form;
}

/// Distance of the centres against the sum or the difference of the radii, whichever is nearer to holding.
Equation circleTangentForm(EquationBuilder& builder, const Operand& a, const Operand& b) {
    Equation outside = formOf(Kernel::circleCircle);
    outside.mode = static_cast<std::uint8_t>(GapMode::outside);
    Equation inside = outside;
    inside.mode = static_cast<std::uint8_t>(GapMode::inside);
    inside.sign = builder.residualAtReference(formOf(Kernel::equalRadii), {a, b}) < 0.0 ? -1.0 : 1.0;
    const double outer = std::abs(builder.residualAtReference(outside, {a, b}));
    const double inner = std::abs(builder.residualAtReference(inside, {a, b}));
    return outer <= inner ? outside : inside;
}

Equation directionForm(EquationBuilder& builder) {
    Equation form = formOf(Kernel::directions);
    const bool isTangent = builder.constraint().type != ConstraintType::perpendicular;
    form.mode = static_cast<std::uint8_t>(isTangent ? DirectionMode::parallel : DirectionMode::perpendicular);
    form.scale = turnScale(builder, curveOf(builder.ref(0)), curveOf(builder.ref(1)));
    return form;
}

void addDirections(EquationBuilder& builder, const Operand& a, const Operand& b, const Operand& point,
                   bool isHeld = false) {
    if (builder.constraint().type == ConstraintType::perpendicular)
        builder.add(directionForm(builder), {a, b, point});
    else
        builder.addTangency(directionForm(builder), {a, b, point}, isHeld);
}

/// The curve for its direction at a point on it, which the point is put on unless that is known already.
Operand curveThrough(EquationBuilder& builder, const FigurePlace& place, const Operand& point) {
    const CurveRef curve = curveOf(place);
    if (!isSplineCurve(builder.figure(), curve)) {
        if (!builder.isOn(point, curve))
            addPointOnCurve(builder, point, place);
        return builder.need(curveAt(builder.figure(), place), place, "a curve");
    }
    if (const auto start = startOf(builder.figure(), curve); start && builder.isOnePoint(point, *start))
        return *curveAt(builder.figure(), {place.entity, PlaceKind::start, 0});
    if (const auto end = endOf(builder.figure(), curve); end && builder.isOnePoint(point, *end))
        return *curveAt(builder.figure(), {place.entity, PlaceKind::end, 0});
    const Contact contact = contactOn(builder, curve);
    Operand position = contact.jet;
    position.kind = OperandKind::splinePoint;
    startContacts(builder, formOf(Kernel::samePoint, 2), {point, position}, {contact});
    builder.add(formOf(Kernel::samePoint, 2), {point, position});
    return contact.jet;
}

void addAtPoint(EquationBuilder& builder, const Operand& point, bool isHeld = false) {
    const Operand a = curveThrough(builder, builder.ref(0), point);
    const Operand b = curveThrough(builder, builder.ref(1), point);
    addDirections(builder, a, b, point, isHeld);
}

Operand endPoint(EquationBuilder& builder, const FigurePlace& place) {
    return builder.need(pointAt(builder.figure(), place), place, "an end of a curve");
}

/// Two ends that meet: the same point, unless ties have seen to that.
Operand joinEnds(EquationBuilder& builder) {
    const Operand p = endPoint(builder, builder.ref(0)), q = endPoint(builder, builder.ref(1));
    if (!isDirect(p) || !isDirect(q))
        builder.add(formOf(Kernel::samePoint, 2), {p, q});
    return isDirect(p) ? p : q;
}

/// A tangency that has a formula of its own, without a point of contact.
struct WholeTangency {
    Equation form;
    Operand a, b;
};

std::optional<WholeTangency> wholeTangency(EquationBuilder& builder, CurveRef one, CurveRef two) {
    const Figure& figure = builder.figure();
    const auto circleA = circleAt(figure, one), circleB = circleAt(figure, two);
    if (circleA && circleB)
        return WholeTangency{circleTangentForm(builder, *circleA, *circleB), *circleA, *circleB};
    const auto line = lineAt(figure, one);
    if (!line)
        return lineAt(figure, two) ? wholeTangency(builder, two, one) : std::nullopt;
    if (circleB)
        return WholeTangency{lineTangentForm(builder, *line, Kernel::lineCircle, *circleB), *line, *circleB};
    if (const auto ellipse = ellipseAt(figure, two))
        return WholeTangency{lineTangentForm(builder, *line, Kernel::lineEllipse, *ellipse), *line, *ellipse};
    if (lineAt(figure, two))
        builder.fail("two lines cannot be tangent; make them parallel or collinear");
    return std::nullopt;
}

/// Where the curves share a point that point is the contact, and a formula of distances would be at its maximum
/// there: directions are compared instead. Distances that hold within the tolerance leave an error of its square root
/// in the direction, so curves that count as tangent by their distance are left as they are.
void addWhole(EquationBuilder& builder) {
    const CurveRef one = curveOf(builder.ref(0)), two = curveOf(builder.ref(1));
    const auto tangency = wholeTangency(builder, one, two);
    if (const auto shared = builder.pointOnBoth(one, two))
        addAtPoint(builder, *shared, tangency && builder.holdsNow(tangency->form, {tangency->a, tangency->b}));
    else if (tangency)
        builder.add(tangency->form, {tangency->a, tangency->b});
    else
        addTouch(builder, one, two);
}

Operand endCurve(EquationBuilder& builder, const FigurePlace& place) {
    return builder.need(curveAt(builder.figure(), place), place, "an end of a curve");
}

}  // namespace

void addTangency(EquationBuilder& builder) {
    const FigurePlace &a = builder.ref(0), &b = builder.ref(1);
    if (builder.constraint().refs.size() == 3) {
        const FigurePlace& at = builder.ref(2);
        addAtPoint(builder, builder.need(pointAt(builder.figure(), at), at, "a point"));
    } else if (isEndPlace(a) && isEndPlace(b)) {
        const Operand point = joinEnds(builder);
        addDirections(builder, endCurve(builder, a), endCurve(builder, b), point);
    } else if (isEndPlace(a)) {
        const Operand point = endPoint(builder, a);
        const Operand other = curveThrough(builder, b, point);
        addDirections(builder, endCurve(builder, a), other, point);
    } else if (isEndPlace(b)) {
        const Operand point = endPoint(builder, b);
        const Operand other = curveThrough(builder, a, point);
        addDirections(builder, other, endCurve(builder, b), point);
    } else {
        addWhole(builder);
    }
}

void addSmoothness(EquationBuilder& builder) {
    const FigurePlace &a = builder.ref(0), &b = builder.ref(1);
    if (!isEndPlace(a) || !isEndPlace(b))
        builder.fail("curves are smooth where two ends meet; name an end of each");
    const Operand point = joinEnds(builder);
    const Operand one = endCurve(builder, a), two = endCurve(builder, b);
    addDirections(builder, one, two, point);
    Equation form = formOf(Kernel::curvatures);
    form.scale = directionForm(builder).scale;
    form.sign = builder.runAlike(one, two, point) ? 1.0 : -1.0;
    builder.add(form, {one, two, point});
}

}  // namespace holdfast
