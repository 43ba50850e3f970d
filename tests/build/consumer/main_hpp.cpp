// Asks the library for one character through the C++ face and prints it.

#include <iostream>

#include <qoc/qoc.hpp>

int main() {
  qoc::Dictionary dictionary;
  dictionary.add(qoc::Lexicon{"A"});
  for (const qoc::ResultView result : dictionary.run("A")) std::cout << result.utf8() << '\n';
  return 0;
}
