#include "commands/join/VertexIdentifiers.h"

#include <yxdb/YxDbPolyline.h>

namespace holdfast::module {

namespace {

int identifierAt(const YxDbPolyline& polyline, int index) {
    int identifier = 0;
    polyline.getVertexIdentifierAt(static_cast<unsigned int>(index), identifier);
    return identifier;
}

void setIdentifierAt(YxDbPolyline& polyline, int index, int identifier) {
    polyline.setVertexIdentifierAt(static_cast<unsigned int>(index), identifier);
}

void writeUnlessNone(YxDbPolyline& polyline, int index, int identifier) {
    if (identifier != 0)
        setIdentifierAt(polyline, index, identifier);
}

// KEEP: swaps neighbours pair by pair, and steps over a pair that it swapped (JoinReversed.SwapsEachPairOfNeighbours,
// JoinReversed.LooksForTheNextPairBehindAVertexWithoutIdentifier).
void swapPairs(YxDbPolyline& polyline) {
    const int last = static_cast<int>(polyline.numVerts()) - 1;
    for (int i = 0; i < last; ++i) {
        const int first = identifierAt(polyline, i);
        const int second = identifierAt(polyline, i + 1);
        if (first == 0 || second == 0)
            continue;
        setIdentifierAt(polyline, i, second);
        setIdentifierAt(polyline, i + 1, first);
        ++i;
    }
}

// KEEP: clears a vertex before one without identifier, and steps over the second of two with identifiers
// (JoinReversed.ClearsAnIdentifierBeforeAVertexWithoutOne, JoinReversed.StepsOverTheSecondOfTwoWhenItClears).
void clearLoose(YxDbPolyline& polyline) {
    const int last = static_cast<int>(polyline.numVerts()) - 1;
    for (int i = 0; i < last; ++i) {
        if (identifierAt(polyline, i) == 0)
            continue;
        if (identifierAt(polyline, i + 1) == 0)
            setIdentifierAt(polyline, i, 0);
        else
            ++i;
    }
}

}  // namespace

YxArray<int> identifiersOf(const YxDbPolyline& polyline) {
    YxArray<int> identifiers;
    const int count = static_cast<int>(polyline.numVerts());
    identifiers.setLogicalLength(count);
    for (int i = 0; i < count; ++i)
        identifiers[i] = identifierAt(polyline, i);
    return identifiers;
}

void writeForward(YxDbPolyline& polyline, int firstIndex, const YxArray<int>& identifiers) {
    for (int i = 0; i < identifiers.length(); ++i)
        writeUnlessNone(polyline, firstIndex + i, identifiers[i]);
}

void writeReversed(YxDbPolyline& polyline, int firstIndex, const YxArray<int>& identifiers) {
    const int count = identifiers.length();
    for (int i = 0; i < count; ++i)
        writeUnlessNone(polyline, firstIndex + count - 1 - i, identifiers[i]);
    swapPairs(polyline);
    clearLoose(polyline);
}

}  // namespace holdfast::module
