#pragma once

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "firmware/KeluBase.h"
#include "firmware/SDT.h"
#include "fuzz/InputBytes.h"

namespace tavocal::fuzz {

// What a firmware answers: one message for every request, or one for each kind of request.
using FirmwareAnswers = std::vector<Bytes>;

// Reads messages with their length, 16 bits, in front. At least one, which may be empty.
inline FirmwareAnswers readAnswers(InputBytes& input) {
    FirmwareAnswers answers;
    do {
        answers.push_back(input.bytes(input.take<std::uint16_t>()));
    } while (!input.empty());
    return answers;
}

// A channel to a firmware that gives an answer by the command of the request and the byte at which
// requests for data and properties differ.
class AnsweringKelu : public KeluBase {
  public:
    explicit AnsweringKelu(FirmwareAnswers messages) : answers(std::move(messages)) {}

    void Connect() override {}
    void Write(const Bytes& request) override {
        constexpr std::size_t kKindAt = 13;  // the high byte of a type of data
        kind = request.empty() ? 0U : request[0];
        kind += request.size() > kKindAt ? request[kKindAt] : 0U;
    }
    void Read(Bytes& output, std::uint32_t maximum) override {
        output = answers[kind % answers.size()];
        output.resize(std::min<std::size_t>(output.size(), maximum));
    }
    void Close() override {}
    void cancelRead() noexcept override {}

  private:
    FirmwareAnswers answers;
    std::size_t kind = 0;
};

// The answers must not be empty.
inline SDT answeringFirmware(const FirmwareAnswers& answers) {
    return SDT([answers] { return std::make_shared<AnsweringKelu>(answers); });
}

}  // namespace tavocal::fuzz
