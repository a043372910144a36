// The commands as processes, beside programs that do much the same.
#include "bench/measure.h"

namespace bench {

void measurePrograms() {}

} // namespace bench
