// The texts BURST makes from the attributes of the references it explodes:
// each attribute's entity list becomes a TEXT entity list carrying the
// attribute's value and look. The lists wait in PendingTexts until the very
// end of the command, when they are created in the order collected.
#pragma once

#include <vector>

#include "kcadstd.h"

// The TEXT entity list for one ATTRIB entity list (a new chain the caller
// releases), or null when the host gives no chain. Items, in order: 0 "TEXT",
// 10, 11, 40, 50, 41, 51, 72, 73 (from the attribute's 74), 71, 62, then 420
// and 430 when the attribute carries them, 7, 8, 6 ("Continuous" when absent), 1.
// Numbers the attribute lacks are 0; the insertion point keeps only the
// attribute's X and Y (its Z is 0); the attribute flags are not consulted, so an
// invisible attribute yields a visible text.
resbuf* textListFromAttribute(const resbuf* attribute);

// Text lists owned until they are created (or dropped with the object).
class PendingTexts {
public:
    PendingTexts() = default;
    ~PendingTexts();
    PendingTexts(const PendingTexts&) = delete;
    PendingTexts& operator=(const PendingTexts&) = delete;

    void add(resbuf* textList);
    // Creates every text with kcdbEntMake in the order added, releasing each list;
    // a list the host rejects is skipped silently.
    void makeAll();

private:
    std::vector<resbuf*> m_lists;
};

// Walks the entities that follow a reference (kcdbEntNext) up to its SEQEND or the
// first entity that is not an ATTRIB, and adds one text list per attribute.
void collectAttributeTexts(const kcad_name reference, PendingTexts& pending);
