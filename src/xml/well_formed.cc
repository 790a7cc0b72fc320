#include "xml/well_formed.h"

#include <expat.h>

#include <memory>
#include <string_view>
#include <type_traits>

namespace libquilp {
namespace {

// Expat follows an entity in an attribute's value by recursion, as deep as entities are declared.
constexpr int kEntityLimit = 256;

struct State {
  XML_Parser parser;
  const std::function<bool()>& isOver;
  int entities = 0;
  unsigned tokens = 0;
};

int takeBytesAsLetters(void* /*data*/, const XML_Char* /*name*/, XML_Encoding* encoding) {
  for (int byte = 0; byte < 256; ++byte) {
    encoding->map[byte] = byte < 128 ? byte : 0x4E00;
  }
  encoding->convert = nullptr;
  encoding->release = nullptr;
  return XML_STATUS_OK;
}

void countEntity(void* data, const XML_Char* /*name*/, int /*isParameter*/,
                 const XML_Char* /*value*/, int /*length*/, const XML_Char* /*base*/,
                 const XML_Char* /*systemId*/, const XML_Char* /*publicId*/,
                 const XML_Char* /*notation*/) {
  auto* state = static_cast<State*>(data);
  if (++state->entities > kEntityLimit) {
    XML_StopParser(state->parser, XML_FALSE);
  }
}

// Expat takes any word as a version.
void checkVersion(void* data, const XML_Char* version, const XML_Char* /*encoding*/,
                  int /*standalone*/) {
  const std::string_view number = version;
  if (number.size() < 3 || number.substr(0, 2) != "1." ||
      number.find_first_not_of("0123456789", 2) != std::string_view::npos) {
    XML_StopParser(static_cast<State*>(data)->parser, XML_FALSE);
  }
}

void checkTime(void* data, const XML_Char* /*text*/, int /*length*/) {
  constexpr unsigned kUnchecked = 1024;
  auto* state = static_cast<State*>(data);
  if (++state->tokens % kUnchecked == 0 && state->isOver && state->isOver()) {
    XML_StopParser(state->parser, XML_FALSE);
  }
}

}  // namespace

XMLFault findXMLFault(const std::string& document, const std::function<bool()>& isOver) {
  const std::unique_ptr<std::remove_pointer_t<XML_Parser>, decltype(&XML_ParserFree)> parser(
      XML_ParserCreate(nullptr), &XML_ParserFree);
  if (!parser) {
    return {XML_ErrorString(XML_ERROR_NO_MEMORY), 0};
  }
  State state = {parser.get(), isOver};
  XML_SetUserData(parser.get(), &state);
  XML_SetUnknownEncodingHandler(parser.get(), takeBytesAsLetters, nullptr);
  XML_SetEntityDeclHandler(parser.get(), countEntity);
  XML_SetXmlDeclHandler(parser.get(), checkVersion);
  XML_SetDefaultHandler(parser.get(), checkTime);  // with it, entities in text are not expanded
  // In one piece: in several, a long token would be read anew for each.
  if (XML_Parse(parser.get(), document.data(), static_cast<int>(document.size()), XML_TRUE) ==
      XML_STATUS_OK) {
    return {};
  }
  return {XML_ErrorString(XML_GetErrorCode(parser.get())), XML_GetCurrentLineNumber(parser.get())};
}

}  // namespace libquilp
