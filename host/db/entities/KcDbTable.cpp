// ACAD_TABLE (AcDbTable after the block reference part): 11 horizontal
// direction, 91 rows, 92 columns, then one 141 row height per row and one 142
// column width per column (the DXF reference's "column height"). The table's
// width is the sum of its column widths, its height the sum of its row heights.
// Later groups reuse 91 and 92 per cell, so only the first of each counts.
#include <algorithm>

#include "db/entities/EntityFields.h"

namespace db = korva::db;

namespace {

constexpr std::string_view kTable = "AcDbTable";

// The sum of the first count groups of a code.
double sumOfFirst(const korva::db::ObjectRecord& record, int code, size_t count) {
    double sum = 0.0;
    size_t taken = 0;
    for (db::TagRef tag : db::fieldsOf(record, kTable, code)) {
        if (taken++ == count) break;
        sum += tag.real();
    }
    return sum;
}

}  // namespace

KcGeVector3d KcDbTable::direction() const { return db::fieldVector(record(), kTable, 11, KcGeVector3d::kXAxis); }

Kcad::UInt32 KcDbTable::numRows() const {
    return static_cast<Kcad::UInt32>(std::max<int64_t>(0, db::fieldInteger(record(), kTable, 91, 0)));
}

Kcad::UInt32 KcDbTable::numColumns() const {
    return static_cast<Kcad::UInt32>(std::max<int64_t>(0, db::fieldInteger(record(), kTable, 92, 0)));
}

double KcDbTable::width() const { return sumOfFirst(record(), 142, numColumns()); }
double KcDbTable::height() const { return sumOfFirst(record(), 141, numRows()); }
