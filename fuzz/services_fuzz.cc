#include "fuzz.h"
#include "services.h"
#include "xml/well_formed.h"

// Reads any bytes as the answer of each service: the document must be well-formed.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string answer = fuzz::bytesOf(data, size);
  for (const AnswerReader& reader : answerReaders()) {
    const std::string document = documentOf(reader, answer);
    fuzz::expect(document.empty() || libquilp::findXMLFault(document).reason == nullptr,
                 "the document is not well-formed");
  }
  return 0;
}
