#include "support/schema_check.h"

#include <libxml/parser.h>
#include <libxml/xmlschemas.h>

#include <cstdarg>
#include <stdexcept>

#include "support/temp_folder.h"

namespace korvel::test {

namespace {

template <auto Free>
struct Freer {
  template <typename T>
  void operator()(T* object) const {
    Free(object);
  }
};
template <typename T, auto Free>
using Owned = std::unique_ptr<T, Freer<Free>>;

/// The published text as libxml2 takes it: an escaped slash is no escape that it knows.
std::string SchemaText() {
  std::string text = ReadFile(std::filesystem::path(KORVEL_SHARED_DIR) / "schema" / "SAFTPT1.01_01.xsd");
  for (std::size_t at = 0; (at = text.find("\\/", at)) != std::string::npos; ++at) text.erase(at, 1);
  return text;
}

void Ignore(void*, const char*, ...) {}

void Collect(void* faults, xmlErrorPtr error) {
  std::string text = error->message ? error->message : "";
  while (text.ends_with('\n')) text.pop_back();
  static_cast<std::vector<std::string>*>(faults)->push_back(text);
}

}  // namespace

struct SchemaCheck::Schema {
  std::string text = SchemaText();
  Owned<xmlSchema, xmlSchemaFree> compiled;
};

SchemaCheck::SchemaCheck() : schema_(std::make_unique<Schema>()) {
  const Owned<xmlSchemaParserCtxt, xmlSchemaFreeParserCtxt> parser(
      xmlSchemaNewMemParserCtxt(schema_->text.data(), static_cast<int>(schema_->text.size())));
  xmlSchemaSetParserErrors(parser.get(), Ignore, Ignore, nullptr);
  schema_->compiled.reset(xmlSchemaParse(parser.get()));
  if (!schema_->compiled) throw std::runtime_error("the schema does not compile");
}

SchemaCheck::~SchemaCheck() = default;

std::vector<std::string> SchemaCheck::Faults(std::string_view document) const {
  std::vector<std::string> faults;
  const Owned<xmlDoc, xmlFreeDoc> tree(xmlReadMemory(document.data(), static_cast<int>(document.size()),
                                                     "document", nullptr, XML_PARSE_NOERROR));
  if (!tree) return {"not well-formed"};
  const Owned<xmlSchemaValidCtxt, xmlSchemaFreeValidCtxt> validator(
      xmlSchemaNewValidCtxt(schema_->compiled.get()));
  xmlSchemaSetValidStructuredErrors(validator.get(), Collect, &faults);
  if (xmlSchemaValidateDoc(validator.get(), tree.get()) < 0)
    throw std::runtime_error("the schema check failed");
  return faults;
}

}  // namespace korvel::test
