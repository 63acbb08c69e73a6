#pragma once

#include <algorithm>
#include <utility>

#include "firmware/KeluBase.h"

namespace tavocal::fuzz {

// A channel to a firmware that answers every request with the same bytes.
class AnsweringKelu : public KeluBase {
  public:
    explicit AnsweringKelu(Bytes message) : answer(std::move(message)) {}

    void Connect() override {}
    void Write(const Bytes&) override {}
    void Read(Bytes& output, std::uint32_t maximum) override {
        output = answer;
        output.resize(std::min<std::size_t>(output.size(), maximum));
    }
    void Close() override {}
    void cancelRead() noexcept override {}

  private:
    Bytes answer;
};

}  // namespace tavocal::fuzz
