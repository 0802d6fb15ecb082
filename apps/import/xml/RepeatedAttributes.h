#pragma once
// Removes attributes that are repeated within a tag: a parser refuses the whole document for them.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Processes a document without its document type declaration, piece by piece.
///
/// The first of a repeated attribute stays. A second `startDate` becomes the `endDate` if the tag
/// has none: phones of 2022 wrote the end under that name. Removed text becomes blanks of the same
/// length, so that lines stay the same. Everything else is unchanged. That includes a tag with an
/// ill-formed repeated attribute, which the parser refuses, and everything after markup that is
/// longer than in any export.
class RepeatedAttributes {
public:
  /// `piece` without repetitions. A tag or comment cut by its end is buffered for the next call.
  /// Valid until the next call and while `piece` is valid: a piece without repetitions is not
  /// copied.
  std::string_view removed(std::string_view piece);

  /// The rest after the last piece; no call may follow.
  std::string_view rest();

  /// The number of repeated attributes so far.
  std::int64_t count() const { return repeated; }

private:
  /// One attribute of the current tag, as positions in the text.
  struct Attribute {
    std::size_t begin;
    std::size_t nameEnd;
    std::size_t quote;  ///< of the opening quotation mark
    std::size_t end;    ///< after the closing quotation mark
  };

  std::size_t completePart(std::string_view text);
  std::size_t startTagEnd(std::string_view text, std::size_t open);
  void note(std::string_view text, const Attribute& attribute);
  void repair(std::string_view text);

  std::string cut;     ///< the incomplete end of the last piece
  std::string edited;  ///< a copy of the current text, if needed
  bool isCopied = false;
  bool givenUp = false;               ///< everything that follows is passed unchanged
  std::vector<Attribute> attributes;  ///< of the current tag
  bool repeats = false;               ///< two of them have the same name
  bool sound = true;                  ///< the repeated ones are well-formed
  std::int64_t repeated = 0;
};
