/* What starting a process and passing it a line cost at least: answers every line with one fixed
 * line, whatever it says. */

#include <unistd.h>

int main(void) {
  static const char answer[] = "{\"jsonrpc\":\"2.0\",\"id\":1,\"result\":{}}\n";
  char block[65536];
  ssize_t count;
  while ((count = read(STDIN_FILENO, block, sizeof block)) > 0) {
    for (ssize_t position = 0; position < count; ++position) {
      if (block[position] != '\n') continue;
      if (write(STDOUT_FILENO, answer, sizeof answer - 1) < 0) return 1;
    }
  }
  return count < 0;
}
