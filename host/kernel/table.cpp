// Tables of the host's own operations: only the check that none is missing.
#include "host/kernel/table.h"

namespace host {

void Table::finish() const {
  for (const tavrel::ListedOperation &operation : operations_)
    if (entries_.at(operation.index) == nullptr)
      throw HostError(tavrel::errGeneric, "table " + name_ + " lacks " + operation.name);
}

} // namespace host
