#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace tavocal {

// A text of a node: one of its own, or a part of the document's, which must then outlive it. Small,
// since a file can hold a node for each few of its characters.
class XmlString {
  public:
    XmlString() = default;
    explicit XmlString(std::wstring text)
        : own(std::make_unique<const std::wstring>(std::move(text))), content(*own) {}

    static XmlString partOf(std::wstring_view documentText) {
        XmlString part;
        part.content = documentText;
        return part;
    }

    std::wstring_view view() const { return content; }

  private:
    std::unique_ptr<const std::wstring> own;
    std::wstring_view content;
};

}  // namespace tavocal
