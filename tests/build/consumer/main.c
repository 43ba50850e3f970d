/* Asks the library for one character and prints it. */

#include <stdio.h>

#include "qoc/ocr_dictionary.h"

int main(void) {
  qoc_ocrDictionaryChar character;
  CharT text = '?';
  if (qoc_ocrDictionaryChar_construct(&character) < 0) return 1;
  character.code = 'A';
  if (qoc_ocrDictionaryChar_getCharT(&character, &text) < 0) return 1;
  printf("%c\n", text);
  return 0;
}
