#pragma once

#include <cassert>
#include <cstddef>
#include <cstring>

namespace tavocal {

// Storage of the numeric types: an array of double whose length is fixed when it is made. Up to
// `InlineCapacity` elements live in the object itself, longer arrays on the heap. Samples are
// copied by the million, so a copy touches the used elements only and the rest of the inline
// room is never written.
//
// A moved-from array is valid: it keeps its elements if they were inline, else it is empty.
template <std::size_t InlineCapacity>
class SmallArray {
  public:
    SmallArray() noexcept : size_(0) {}

    // `size` zeros. REQUIRES: size >= 0; a negative size counts as 0.
    explicit SmallArray(int size) : SmallArray(size, Uninitialised{}) {
        for (int i = 0; i < size_; ++i) {
            data()[i] = 0.0;
        }
    }

    // REQUIRES: `size` doubles at `source`.
    SmallArray(const double* source, int size) : SmallArray(size, Uninitialised{}) {
        copyElements(data(), source, size_);
    }

    SmallArray(const SmallArray& other) : SmallArray(other.data(), other.size_) {}

    SmallArray(SmallArray&& other) noexcept : size_(other.size_) { takeFrom(other); }

    SmallArray& operator=(const SmallArray& other) {
        if (size_ == other.size_) {
            copyElements(data(), other.data(), size_);  // a self-assignment copies onto itself
        } else {
            *this = SmallArray(other);
        }
        return *this;
    }

    SmallArray& operator=(SmallArray&& other) noexcept {
        if (this != &other) {
            release();
            size_ = other.size_;
            takeFrom(other);
        }
        return *this;
    }

    ~SmallArray() { release(); }

    int size() const noexcept { return size_; }
    double* data() noexcept { return isInline() ? inline_ : heap_; }
    const double* data() const noexcept { return isInline() ? inline_ : heap_; }

  private:
    struct Uninitialised {};

    SmallArray(int size, Uninitialised) : size_(size > 0 ? size : 0) {
        assert(size >= 0);
        if (!isInline()) {
            heap_ = new double[static_cast<std::size_t>(size_)];
        }
    }

    bool isInline() const noexcept { return static_cast<std::size_t>(size_) <= InlineCapacity; }

    // Takes over the elements of `other`, whose size this array has already.
    void takeFrom(SmallArray& other) noexcept {
        if (isInline()) {
            copyElements(inline_, other.inline_, size_);
        } else {
            heap_ = other.heap_;
            other.size_ = 0;
        }
    }

    void release() noexcept {
        if (!isInline()) {
            delete[] heap_;
        }
    }

    static void copyElements(double* to, const double* from, int count) noexcept {
        // Nearly every array is one reading of three axes; a constant length compiles to moves.
        if (count == 3) {
            std::memmove(to, from, 3 * sizeof(double));
        } else if (count > 0) {
            std::memmove(to, from, static_cast<std::size_t>(count) * sizeof(double));
        }
    }

    int size_;
    union {
        double inline_[InlineCapacity];
        double* heap_;
    };
};

}  // namespace tavocal
