#pragma once
// Takes away attributes that stand twice in a tag, for which a parser refuses the whole document.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Looks through a document without its document type declaration, piece by piece.
///
/// Of an attribute that stands twice in a start tag the first stays. A second `startDate` becomes
/// the `endDate` where the tag has none: phones of 2022 wrote the end under that name. What goes
/// turns into blanks of the same length, so that lines stay what they were. All else passes as it
/// is, also a tag in which a repeated attribute is not well-formed: that is the parser's to refuse.
/// So does everything behind markup that is longer than any of an export.
class RepeatedAttributes {
public:
  /// `piece` without repetitions, less a tag or comment that its end cuts, which the next call
  /// takes up. Valid until the next call and as long as `piece` is: a piece without repetitions is
  /// not copied.
  std::string_view removed(std::string_view piece);

  /// What the last piece left over; after it nothing follows.
  std::string_view rest();

  /// Attributes so far that had the name of one before them.
  std::int64_t count() const { return repeated; }

private:
  /// One attribute of the tag under way, by places in the text.
  struct Attribute {
    std::size_t begin;
    std::size_t nameEnd;
    std::size_t quote;  ///< the opening one
    std::size_t end;    ///< behind the closing quotation mark
  };

  std::size_t completePart(std::string_view text);
  std::size_t startTagEnd(std::string_view text, std::size_t open);
  void note(std::string_view text, const Attribute& attribute);
  void repair(std::string_view text);

  std::string cut;     ///< what the end of the last piece cut
  std::string edited;  ///< a copy of the text under way, where one was needed
  bool isCopied = false;
  bool givenUp = false;               ///< what follows passes as it is
  std::vector<Attribute> attributes;  ///< of the tag under way
  bool repeats = false;               ///< one of them has the name of another
  bool sound = true;                  ///< those that have are well-formed
  std::int64_t repeated = 0;
};
