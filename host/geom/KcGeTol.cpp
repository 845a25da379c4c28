// The process-wide default tolerance that every comparison of the geometry classes
// falls back to when the caller passes none.
#include "kcge.h"

KcGeTol KcGeContext::gTol;
