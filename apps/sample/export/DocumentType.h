#pragma once
// How an export begins: as XML, and with what it is made of.

#include <string_view>

/// The XML declaration and the document type, whose internal subset declares every element and
/// attribute that an export of the sample has. The document is valid by it. Ends in a line feed.
extern const std::string_view documentType;
