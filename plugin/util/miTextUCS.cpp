// White space in UCS strings.
#include <cstring>

#include "plugin/util/miText.h"
#include "plugin/util/miUtils.h"

using tavrel::Bool16;

namespace {

constexpr uint32_t examined = 65535;

/// A unit of one byte that is white space; not miUCSIsSpace, which looks at four bits.
bool isSpaceUnit(const char *unit) { return unit[0] == 0 && miIsspace(static_cast<uint8_t>(unit[1])); }

bool isZeroUnit(const char *unit) { return unit[0] == 0 && unit[1] == 0; }

} // namespace

Bool16 miUCSIsSpace(uint16_t unit) {
  // The low four bits only, on purpose: 0x19 to 0x1D count and 0x20 does not.
  return unit < 0x100 ? miIsspace(unit & 0x0F) : Bool16{0};
}

Bool16 miUCSStrip(char *string) {
  char *write = string + 2;
  const char *read = write;
  while (isSpaceUnit(read))
    read += 2;
  // Stops at two zero bytes wherever they stand, on purpose: a unit that ends in a zero byte before one that begins
  // with one is the end.
  while (!isZeroUnit(read))
    *write++ = *read++;
  const bool betweenUnits = (write - string) % 2 == 0;
  memset(write, 0, betweenUnits ? 2 : 3); // the unit that is cut in two gets its other half
  if (!betweenUnits) ++write;
  while (write > string + 2 && isSpaceUnit(write - 2)) {
    write -= 2;
    write[1] = 0;
  }
  return !isZeroUnit(string + 2);
}

Bool16 miUCSStripAll(char *string) {
  if (string == nullptr) return 0;
  const char *read = string + 2;
  char *write = string + 2;
  for (; !isZeroUnit(read) && read - (string + 2) < 2 * ptrdiff_t{examined}; read += 2)
    if (!isSpaceUnit(read)) {
      write[0] = read[0];
      write[1] = read[1];
      write += 2;
    }
  const char *end = read;
  while (!isZeroUnit(end))
    end += 2;
  memmove(write, read, static_cast<size_t>(end - read) + 2);
  return !isZeroUnit(string + 2);
}
