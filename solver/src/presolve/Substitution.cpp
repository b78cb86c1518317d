#include "solver/src/presolve/Substitution.h"

#include <algorithm>
#include <cmath>

namespace holdfast::solver::detail {

Substitution::Substitution(int valueCount) : m_sizes(static_cast<std::size_t>(valueCount) + 1, 1) {
    m_links.reserve(m_sizes.size());
    for (int v = kGround; v < valueCount; ++v)
        m_links.push_back({v, 1.0, 0.0});
}

int Substitution::addValue() {
    const int value = static_cast<int>(m_links.size()) - 1;
    m_links.push_back({value, 1.0, 0.0});
    m_sizes.push_back(1);
    return value;
}

Substitution::Link Substitution::find(int a) {
    int root = a;
    Link total{a, 1.0, 0.0};
    while (m_links[at(root)].root != root) {
        const Link& step = m_links[at(root)];
        total.offset += total.sign * step.offset;
        total.sign *= step.sign;
        root = step.root;
    }
    total.root = root;
    // Second walk: every link on the way now points to the root.
    Link rest = total;
    for (int v = a; v != root;) {
        const Link step = m_links[at(v)];
        m_links[at(v)] = rest;
        rest = {root, rest.sign * step.sign, (rest.offset - step.offset) * step.sign};
        v = step.root;
    }
    return total;
}

void Substitution::hang(int root, const Link& below) {
    m_links[at(root)] = below;
    m_sizes[at(below.root)] += m_sizes[at(root)];
}

Substitution::Outcome Substitution::tie(int a, int b, double sign, double offset, double tolerance, int owner) {
    const Link la = find(a), lb = find(b);
    // value(a) = sign value(b) + offset, in terms of the roots: la.sign ra + la.offset = s rb + o.
    const double s = sign * lb.sign, o = sign * lb.offset + offset;
    if (la.root == kGround && lb.root == kGround)
        return std::abs(la.offset - o) <= tolerance ? Outcome::spare : Outcome::conflicting;
    if (la.root == lb.root && la.sign == s)
        return std::abs(la.offset - o) <= tolerance ? Outcome::spare : Outcome::conflicting;
    if (la.root == lb.root)  // x = -x + 2 c
        hang(la.root, {kGround, 1.0, (o - la.offset) / (la.sign - s)});
    else if (la.root != kGround && (lb.root == kGround || m_sizes[at(la.root)] <= m_sizes[at(lb.root)]))
        hang(la.root, {lb.root, la.sign * s, (o - la.offset) * la.sign});
    else
        hang(lb.root, {la.root, la.sign * s, (la.offset - o) * s});
    m_ties.push_back({a, b, owner});
    return Outcome::joined;
}

std::vector<int> Substitution::ownersBetween(int a, int b) const {
    // Only asked when there is a contradiction to explain, so the neighbours are collected here.
    std::vector<std::vector<std::size_t>> tiesOf(m_links.size());
    for (std::size_t i = 0; i < m_ties.size(); ++i) {
        tiesOf[at(m_ties[i].a)].push_back(i);
        tiesOf[at(m_ties[i].b)].push_back(i);
    }
    constexpr std::size_t none = static_cast<std::size_t>(-1);
    std::vector<std::size_t> reachedBy(m_links.size(), none);
    std::vector<int> queue{a};
    for (std::size_t head = 0; head < queue.size() && queue[head] != b; ++head) {
        for (const std::size_t i : tiesOf[at(queue[head])]) {
            const int next = m_ties[i].a == queue[head] ? m_ties[i].b : m_ties[i].a;
            if (next != a && reachedBy[at(next)] == none) {
                reachedBy[at(next)] = i;
                queue.push_back(next);
            }
        }
    }
    std::vector<int> owners;
    for (int v = b; v != a && reachedBy[at(v)] != none;) {
        const Tie& tie = m_ties[reachedBy[at(v)]];
        owners.push_back(tie.owner);
        v = tie.a == v ? tie.b : tie.a;
    }
    std::sort(owners.begin(), owners.end());
    owners.erase(std::unique(owners.begin(), owners.end()), owners.end());
    return owners;
}

}  // namespace holdfast::solver::detail
