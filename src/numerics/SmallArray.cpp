#include "numerics/SmallArray.h"

namespace tavocal {

// Out of line, so that the rare long arrays don't burden the code of every copy.

std::unique_ptr<double[]> makeHeapArray(int size) {
    return std::unique_ptr<double[]>(new double[static_cast<std::size_t>(size)]);
}

std::unique_ptr<double[]> copyToHeap(const double* source, int size) {
    std::unique_ptr<double[]> copy = makeHeapArray(size);
    std::copy_n(source, size, copy.get());
    return copy;
}

}  // namespace tavocal
