#include "numerics/TextForms.h"

#include <cstddef>

#include "base/Text.h"

namespace tavocal {

namespace {

constexpr std::size_t kFieldWidth = 10;

template <typename RowText>
std::string rowTexts(const Matrix& values, RowText rowText) {
    std::string text;
    for (int r = 0; r < values.rows(); ++r) {
        text += rowText(row(values, r));
    }
    return text;
}

}  // namespace

std::string alignedRow(const Vector& values) {
    std::string text;
    for (const double value : values) {
        const std::string number = fixedText(value);
        if (number.size() < kFieldWidth) {
            text.append(kFieldWidth - number.size(), ' ');
        }
        text += number;
        text += ' ';
    }
    text += '\n';
    return text;
}

std::string alignedMatrix(const Matrix& values) {
    return rowTexts(values, alignedRow);
}

std::string compactRow(const Vector& values) {
    std::string text;
    for (int i = 0; i < values.size(); ++i) {
        appendFixed(text, values[i]);
        text += i + 1 < values.size() ? ',' : ';';
    }
    return text;
}

std::string compactMatrix(const Matrix& values) {
    return rowTexts(values, compactRow);
}

std::wstring wideAlignedRow(const Vector& values) {
    return widen(alignedRow(values));
}

std::wstring wideAlignedMatrix(const Matrix& values) {
    return widen(alignedMatrix(values));
}

std::wstring wideCompactRow(const Vector& values) {
    return widen(compactRow(values));
}

std::wstring wideCompactMatrix(const Matrix& values) {
    return widen(compactMatrix(values));
}

}  // namespace tavocal
