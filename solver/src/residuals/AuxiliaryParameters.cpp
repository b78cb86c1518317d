#include "solver/src/residuals/AuxiliaryParameters.h"

#include <array>
#include <limits>
#include <numbers>

#include "geometry/SplineBasis.h"

namespace holdfast::solver::detail {

namespace {

/// Finds where along the curves their contact is, at one of the two times.
class ContactSearch {
public:
    ContactSearch(EquationBuilder& builder, When when, Equation form, std::initializer_list<Operand> operands)
        : m_builder(builder), m_when(when) {
        m_set.splines = &builder.sketch().splines;
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
        constexpr int most = 50;           // Newton takes 5 to 10
        constexpr double shortest = 0.01;  // part of a step: shorter ones gain rounding
        double now = miss();
        for (int i = 0; i < most && now > 0.0; ++i) {
            const std::vector<double> before = params(contacts);
            const std::vector<double> step = newtonStep(contacts);
            bool hasImproved = false;
            for (double factor = 1.0; factor > shortest && !hasImproved; factor *= 0.5) {
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
        // Finer than the bends of a spline with tens of spans; of two curves the square is what it costs.
        constexpr int ofOne = 256, ofTwo = 48;
        const int samples = contacts.size() == 1 ? ofOne : ofTwo;
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
        constexpr double singular = 1e-12;  // squared sine of the angle between the curves: they run alongside
        const double determinant = h[0] * h[2] - h[1] * h[1];
        if (!(determinant > singular * h[0] * h[2]))
            return {h[0] > 0.0 ? g[0] / h[0] : 0.0, 0.0};
        return {(g[0] * h[2] - g[1] * h[1]) / determinant, (g[1] * h[0] - g[0] * h[1]) / determinant};
    }

    EquationBuilder& m_builder;
    When m_when;
    EquationSet m_set;
    double m_best = 0.0;
    std::vector<double> m_bestParams;
};

}  // namespace

Contact contactOn(EquationBuilder& builder, CurveRef curve) {
    // A parameter is no geometry: it may run along the curve at little cost.
    constexpr double cheap = 1e-2;
    const double size = sizeOf(builder.sketch(), curve, builder.size());
    if (auto ellipse = ellipseAt(builder.sketch(), curve)) {
        const int param = builder.addContact(0.0, cheap * size);
        ellipse->kind = OperandKind::ellipseAt;
        ellipse->inputs.push_back(param);
        return {*ellipse, param, 0.0, 2 * std::numbers::pi};
    }
    const SketchEntity& entity = builder.sketch().entities[static_cast<std::size_t>(curve.entity)];
    const SplineRange range = splineRange(builder.sketch().splines[static_cast<std::size_t>(entity.spline)]);
    const int param = builder.addContact(range.first, cheap * size / (range.last - range.first));
    return {splineAt(builder.sketch(), curve.entity, OperandKind::splineJet, param), param, range.first, range.last};
}

bool hasContacts(const EquationBuilder& builder, CurveRef curve) {
    return ellipseAt(builder.sketch(), curve).has_value() || isSplineCurve(builder.sketch(), curve);
}

void startContacts(EquationBuilder& builder, Equation form, std::initializer_list<Operand> operands,
                   std::initializer_list<Contact> contacts) {
    for (const When when : {When::reference, When::now}) {
        ContactSearch search(builder, when, form, operands);
        search.sample({contacts.begin(), contacts.size()});
        search.refine({contacts.begin(), contacts.size()});
    }
}

}  // namespace holdfast::solver::detail
