// Templates of messages, and the formats of their arguments.
#include "target.hpp"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace tvx::fuzz;
  Input input(data, size);
  // A format that names no argument that is not handed over, in the order in which it is.
  constexpr const char* kFormats[] = {"", "%s", "%s %ld", "%s %ld %d"};
  const char* const format = kFormats[input.choose(4)];
  const int32_t room = input.choose(300);
  const std::string message(input.rest().substr(0, input.rest().find('\0')));
  const Block text(message, message.size() + 1);
  const Block out(static_cast<size_t>(room));
  const int32_t length =
      intl_strbuild(0, out.data(), room, text.data(), format, "text", int32_t{-77}, int32_t{5});
  expect(length < room || length < 0);
  if (length >= 0) expect(std::strlen(out.data()) == static_cast<size_t>(length));
  return 0;
}
