#pragma once

namespace tavocal {

// What reading or writing XML ended with. The numbers are fixed.
enum class XmlResult {
    Success = 0,
    EmptyPath = 1,
    Unreadable = 2,           // the file can't be opened or read, or isn't UTF-8
    Unwritable = 3,           // the file can't be opened or written
    InvalidName = 5,          // an element name holds a character that names can't hold
    ClosingNameDiffers = 6,   // a closing tag names another element than the open one
    OpeningTokenMissing = 7,  // the text doesn't begin with the opening token of its node class
    NoParser = 8,             // the node class has no parser
    UnsupportedSyntax = 9,    // "<![CDATA[" or "<!" where a node is expected
    StrayTagEnd = 10,         // "/>" where a node is expected
};

}  // namespace tavocal
