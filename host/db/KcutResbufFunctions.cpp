// Result-buffer utilities of the C-level API.
#include <cmath>
#include <cstdarg>

#include "db/ResultBuffers.h"
#include "kcdbfuncs.h"

namespace db = korva::db;

resbuf* kcutNewRb(int type) { return db::newResbuf(static_cast<short>(type)); }

int kcutRelRb(resbuf* chain) {
    db::releaseResbufs(chain);
    return RTNORM;
}

resbuf* kcutBuildList(int code, ...) {
    va_list args;
    va_start(args, code);
    db::ResbufChain chain;
    bool ok = true;
    while (code != 0 && code != RTNONE) {
        const short restype = static_cast<short>(code == RTDXF0 ? 0 : code);
        switch (db::itemTypeOf(code)) {
            case db::ItemType::Real: chain.appendReal(restype, va_arg(args, double)); break;
            case db::ItemType::Point: {
                const double* p = va_arg(args, const double*);
                chain.appendPoint(restype, p ? KcGePoint3d(p[0], p[1], code == RTPOINT ? 0.0 : p[2]) : KcGePoint3d());
                break;
            }
            case db::ItemType::Short: chain.appendShort(restype, va_arg(args, int)); break;
            case db::ItemType::Long:
                if (resbuf* rb = chain.append(restype)) rb->resval.rlong = va_arg(args, int32_t);
                break;
            case db::ItemType::Int64:
                if (resbuf* rb = chain.append(restype)) rb->resval.mnInt64 = va_arg(args, int64_t);
                break;
            case db::ItemType::Name: {
                const int64_t* name = va_arg(args, const int64_t*);
                if (resbuf* rb = chain.append(restype)) {
                    rb->resval.rlname[0] = name ? name[0] : 0;
                    rb->resval.rlname[1] = name ? name[1] : 0;
                }
                break;
            }
            case db::ItemType::Text:
            case db::ItemType::HandleText: {
                const wchar_t* text = va_arg(args, const wchar_t*);
                chain.appendText(restype, text ? text : L"");
                break;
            }
            case db::ItemType::Binary: ok = false; break;
            case db::ItemType::None: chain.append(restype); break;
        }
        if (!ok) break;
        code = va_arg(args, int);
    }
    va_end(args);
    return ok ? chain.release() : nullptr;
}

bool kcutRealEqual(double a, double b, double e) {
    if (std::fabs(b) <= e) return std::fabs(a) <= e;
    return std::fabs(a - b) <= std::fabs(b * e);
}
