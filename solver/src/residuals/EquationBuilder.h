#pragma once

#include <map>
#include <string>

#include "geometry/ConstraintKinds.h"
#include "solver/src/Uses.h"
#include "solver/src/presolve/Substitution.h"
#include "solver/src/residuals/EquationSystem.h"
#include "solver/src/residuals/Operands.h"

namespace holdfast::solver::detail {

/// Which of a sketch's two sets of values is meant.
enum class When { reference, now };

/// Turns constraints into ties between values, and into equations where no tie will do. One family of constraints
/// per source file adds through it.
class EquationBuilder {
public:
    EquationBuilder(const SketchData& sketch, EquationSystem& system, bool merges);

    void build(std::span<const int> constraints, const KeptSizes& sizes);

    const SketchData& sketch() const { return m_sketch; }
    double size() const { return m_system.size; }
    double reference(int value) const { return m_reference[static_cast<std::size_t>(value)]; }
    /// Whatever is read of now is noted in the system.
    std::span<const double> values(When when) const;

    // Ties. Each belongs to the constraint that is being added.
    void tie(int a, int b, double sign, double offset);
    void fix(int value, double constant);
    /// Ties both coordinates of two direct points. implied: another constraint usually says the same, which makes
    /// neither of them spare.
    void tiePoints(const Operand& p, const Operand& q, bool isImplied = false);

    /// True when the values differ by a constant; then `difference` is b - a.
    bool differByConstant(int a, int b, double& difference);
    bool isConstant(int value) { return m_merge.isConstant(value); }
    double constantOf(int value) { return m_merge.find(value).offset; }
    bool areSamePoint(const Operand& p, const Operand& q);

    // Equations. Owner and scale are filled in.
    void add(Equation form, std::initializer_list<Operand> operands);
    /// The same for a size that is kept: the equation may miss by a slack that counts with this weight in the movement;
    /// 0: it holds.
    void addSize(Equation form, std::initializer_list<Operand> operands, double weight, SizeRow::Kind kind);
    std::size_t sizeCount() const { return m_system.sizes.size(); }
    /// Adds an equation whose two curves have to keep their sense.
    /// isHeld: the curves count as tangent now, and an error of direction that they have now is not made smaller.
    void addTangency(Equation form, std::initializer_list<Operand> operands, bool isHeld = false);
    /// The first residual that the equation would have.
    double residualAt(When when, Equation form, std::initializer_list<Operand> operands) const;
    double residualAtReference(Equation form, std::initializer_list<Operand> operands) const {
        return residualAt(When::reference, form, operands);
    }
    bool holdsNow(Equation form, std::initializer_list<Operand> operands) const;
    /// True when the two curves run the same way at the point, at the reference.
    bool runAlike(const Operand& a, const Operand& b, const Operand& point) const;
    /// A new value that belongs to an equation only: unknown (a contact parameter) or constant.
    int addContact(double start, double metric);
    /// Moves a contact parameter to where it belongs at one of the two times.
    void setContact(When when, int value, double x);
    int addConstant(double value);

    /// The operand, or refusePlaces() where the place has none.
    Operand need(std::optional<Operand> operand) const;
    /// A SketchError that says what the constraint's kind takes, and what it found.
    [[noreturn]] void refusePlaces() const;
    [[noreturn]] void fail(const std::string& message) const;

    /// A point known to lie on the curve: an end of it, or put there by a constraint.
    void notePointOn(const Operand& point, CurveRef curve);
    bool isOn(const Operand& point, CurveRef curve);
    bool isOnePoint(const Operand& p, const Operand& q) { return isDirect(p) && isDirect(q) && areSamePoint(p, q); }
    /// A direct point known to lie on both curves, if there is one.
    std::optional<Operand> pointOnBoth(CurveRef a, CurveRef b);

    const SketchConstraint& constraint() const { return *m_constraint; }
    const ConstraintTraits& traits() const { return traitsOf(m_constraint->type); }
    /// The value as the residual takes it: a radius for a diameter.
    double target() const { return traits().residualFactor * m_constraint->value; }
    const SketchPlace& ref(std::size_t i) const;

private:
    std::vector<Operand> knownPointsOn(CurveRef curve) const;
    void addRules(int entity);
    void begin(int constraint);
    void addOwn();
    void foldAll(std::span<const int> constraints);
    void numberUnknowns();
    void listEquations();
    void record(Substitution::Outcome outcome, int a, int b, bool isImplied);
    double toleranceOf(int value) const;

    const SketchData& m_sketch;
    EquationSystem& m_system;
    std::vector<double> m_reference;
    Substitution m_merge;
    int m_current = -1;  ///< the constraint that is being added
    int m_entity = -1;
    const SketchConstraint* m_constraint = nullptr;
    std::map<CurveRef, std::vector<Operand>> m_pointsOn;
    mutable EquationSet m_probe;  ///< of one equation, to look at its residual; kept for its room
    std::vector<char> m_isDone;   ///< per constraint: ties say all of it
    bool m_merges;                ///< false: what ties say is said by equations too
};

// Each through the residual that the constraint's kind has. tieNow: what ties can say at once; true when that is all.
// fold: what they can say now that other ties are known; true when that is all. addEquations: the rest.
bool tieNow(EquationBuilder& builder);
bool fold(EquationBuilder& builder);
void addEquations(EquationBuilder& builder);

/// Puts a point on a curve of any kind.
void addPointOnCurve(EquationBuilder& builder, const Operand& point, const SketchPlace& curve);

/// Equations that keep the sizes of one entity as they are at the reference; see KeptSizes.
void addKeptSizes(EquationBuilder& builder, const KeptShape& shape, const KeptSizes& sizes);

/// A form with the residual kind set, one row unless said otherwise.
Equation formOf(ResidualKind residualKind, std::uint8_t rows = 1);

/// The length that turns an angle between two curves into a distance: the size of the smaller one.
double turnScale(const EquationBuilder& builder, CurveRef a, CurveRef b);

bool isEndPlace(const SketchPlace& place);

}  // namespace holdfast::solver::detail
