#pragma once

#include <string_view>
#include <vector>

#include "toolkit/file_sink.h"

namespace korvel::auditfile {

/// Writes XML as it is told: UTF-8 comes in, windows-1252 goes out, without whitespace between the elements. In text
/// & < > are escaped, a carriage return becomes a reference so that it survives reading, characters outside
/// windows-1252 become numeric references, and what XML 1.0 forbids is left out.
/// Names are literals of the program and outlive the writer. An element without content is written <Name/>.
class XmlWriter {
 public:
  explicit XmlWriter(toolkit::FileSink& sink) : sink_(sink) {}

  /// The first line of the file.
  void Declaration();

  /// `attributes` is written behind the name as it stands.
  void OpenElement(std::string_view name, std::string_view attributes = {});
  /// Closes the innermost open element.
  void CloseElement();
  /// An element with what `content()` writes in it.
  template <typename Content>
  void Element(std::string_view name, Content&& content) {
    OpenElement(name);
    content();
    CloseElement();
  }
  /// An element that holds `text` alone.
  void Leaf(std::string_view name, std::string_view text);
  /// The sink, for whole elements that are in the file's encoding already.
  toolkit::FileSink& Raw();

 private:
  void CloseStartTag();
  void LongLeaf(std::string_view name, std::string_view text);

  toolkit::FileSink& sink_;
  std::vector<std::string_view> open_;
  bool startTagOpen_ = false;
};

}  // namespace korvel::auditfile
