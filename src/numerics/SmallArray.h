#pragma once

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstring>
#include <memory>
#include <utility>

namespace tavocal {

// `size` doubles without values.
std::unique_ptr<double[]> makeHeapArray(int size);
// A copy of `size` doubles.
std::unique_ptr<double[]> copyToHeap(const double* source, int size);

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
        if (size_ > InlineCapacity) {
            heap_ = makeHeapArray(size_);
        }
        std::fill_n(data(), size_, 0.0);
    }

    // REQUIRES: `size` doubles at `source`.
    SmallArray(const double* source, int size) : size_(std::max(size, 0)) {
        assert(size >= 0);
        if (size_ > InlineCapacity) {
            heap_ = copyToHeap(source, size_);
        } else {
            copyInline(source);
        }
    }

    SmallArray(const SmallArray& other) : size_(other.size_) {
        if (other.heap_ != nullptr) {
            heap_ = copyToHeap(other.heap_.get(), size_);
        } else {
            copyInline(other.inline_);
        }
    }

    SmallArray(SmallArray&& other) noexcept : size_(other.size_), heap_(std::move(other.heap_)) {
        finishMove(other);
    }

    SmallArray& operator=(const SmallArray& other) {
        if (this == &other) {
            return *this;
        }
        heap_ = other.heap_ != nullptr ? copyToHeap(other.heap_.get(), other.size_) : nullptr;
        size_ = other.size_;
        if (heap_ == nullptr) {
            copyInline(other.inline_);
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
    // Copies size_ elements into the inline room, which may be where they are.
    void copyInline(const double* source) noexcept {
        if (size_ == 3) {
            // Nearly every array is one reading of three axes. Going through a local array makes
            // this a few moves, where a memmove stays a call.
            double axes[3];
            std::memcpy(axes, source, sizeof(axes));
            std::memcpy(inline_, axes, sizeof(axes));
        } else {
            // The bound, which always holds, shows the compiler that the copy stays inside.
            const int count = std::min(size_, InlineCapacity);
            std::memmove(inline_, source, static_cast<std::size_t>(count) * sizeof(double));
        }
    }

    // Brings over what the move of the heap pointer left in `other`.
    void finishMove(SmallArray& other) noexcept {
        if (heap_ != nullptr) {
            other.size_ = 0;
        } else {
            copyInline(other.inline_);
        }
    }

    int size_;
    std::unique_ptr<double[]> heap_;  // null while the elements are inline
    double inline_[static_cast<std::size_t>(InlineCapacity)];
};

}  // namespace tavocal
