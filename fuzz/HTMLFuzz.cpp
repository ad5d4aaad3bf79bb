// HTML: the encoding that a document names, and its plain text.
#include "fuzz/UnitsFuzz.h"
#include "library/text/HTMLEncoding.h"
#include "library/text/XMLElement.h"
#include "platform/HTMLText.h"
#include "platform/Services.h"
#include "platform/testing/RecordingLog.h"

using kr::fuzz::require;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes = kr::fuzz::text(data, size);
  kr::platform::testing::RecordingLog log;
  kr::platform::Services services = kr::platform::services();
  services.log = &log;
  const kr::platform::ScopedServices scope(services);

  (void)kr::decodedHTML(bytes);
  const std::u16string document = kr::decodedHTML("<html><meta charset=" + std::string(bytes));
  require(!document.empty(), "a document has a source text");

  const auto [source, other] = kr::fuzz::twoTexts(data, size);
  const auto text = kr::platform::textOfHTML(source);
  require(text.has_value(), "every text can be read as HTML");
  require(text->find(u'\0') == std::u16string::npos, "no zero is left");
  (void)kr::xmlElement(source, other);
  return 0;
}
