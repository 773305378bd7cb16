#include "shell/program.h"

int main(int argc, char** argv) {
  return korvel::desktop::RunProgram(argc, argv);
}
