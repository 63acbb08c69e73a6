#pragma once

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstring>
#include <memory>
#include <utility>

namespace tavocal {

// Storage of the numeric types: an array of double whose length is fixed when it is made. Up to
// `InlineCapacity` elements live in the object itself, longer arrays on the heap. Samples are
// copied by the million, so a copy touches the used elements only and the rest of the inline
// room is never written.
//
// A moved-from array is valid: it keeps its elements if they were inline, else it is empty.
template <int InlineCapacity>
class SmallArray {
    static_assert(InlineCapacity >= 3);

  public:
    SmallArray() noexcept : size_(0) {}

    // `size` zeros. REQUIRES: size >= 0; a negative size counts as 0.
    explicit SmallArray(int size) : size_(std::max(size, 0)) {
        assert(size >= 0);
        allocate();
        std::fill_n(data(), size_, 0.0);
    }

    // REQUIRES: `size` doubles at `source`.
    SmallArray(const double* source, int size) : size_(std::max(size, 0)) {
        assert(size >= 0);
        allocate();
        copyFrom(source);
    }

    SmallArray(const SmallArray& other) : SmallArray(other.data(), other.size_) {}

    SmallArray(SmallArray&& other) noexcept : size_(other.size_), heap_(std::move(other.heap_)) {
        finishMove(other);
    }

    SmallArray& operator=(const SmallArray& other) {
        if (other.heap_ != nullptr) {
            *this = SmallArray(other);
        } else {
            heap_.reset();
            size_ = other.size_;
            copyFrom(other.inline_);
        }
        return *this;
    }

    SmallArray& operator=(SmallArray&& other) noexcept {
        if (this != &other) {
            size_ = other.size_;
            heap_ = std::move(other.heap_);
            finishMove(other);
        }
        return *this;
    }

    ~SmallArray() = default;

    int size() const noexcept { return size_; }
    double* data() noexcept { return heap_ != nullptr ? heap_.get() : inline_; }
    const double* data() const noexcept { return heap_ != nullptr ? heap_.get() : inline_; }

  private:
    void allocate() {
        if (size_ > InlineCapacity) {
            heap_.reset(new double[static_cast<std::size_t>(size_)]);
        }
    }

    // Copies size_ elements, which may be this array's own.
    void copyFrom(const double* source) noexcept {
        // Nearly every array is one reading of three axes; a constant length compiles to moves.
        if (size_ == 3) {
            std::memmove(inline_, source, 3 * sizeof(double));
        } else if (heap_ == nullptr) {
            // The bound, which always holds, shows the compiler that the copy stays inside.
            const int count = std::min(size_, InlineCapacity);
            std::memmove(inline_, source, static_cast<std::size_t>(count) * sizeof(double));
        } else {
            std::copy_n(source, size_, heap_.get());
        }
    }

    // Brings over what the move of the heap pointer left in `other`.
    void finishMove(SmallArray& other) noexcept {
        if (heap_ != nullptr) {
            other.size_ = 0;
        } else {
            copyFrom(other.inline_);
        }
    }

    int size_;
    std::unique_ptr<double[]> heap_;  // null while the elements are inline
    double inline_[static_cast<std::size_t>(InlineCapacity)];
};

}  // namespace tavocal
