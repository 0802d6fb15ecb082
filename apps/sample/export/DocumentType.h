#pragma once
// The beginning of an export: its XML declaration and document type.

#include <string_view>

/// The XML declaration and the document type. The internal subset declares every element and
/// attribute of a sample's export, so the document is valid. Ends with a line feed.
extern const std::string_view documentType;
