// Asks for the details of its own executable.
#include <tarnwick/tarnwick.h>

#include <iostream>
#include <string>

int main(int, char** arguments) {
  std::string answer(1 << 20, '\0');
  const int length =
      IA_GetGameDetailsByPathJson(arguments[0], answer.data(), static_cast<int>(answer.size()));
  answer.resize(static_cast<size_t>(length));
  std::cout << answer << "\n";
  return length > 2 ? 0 : 1;
}
