#include <CLI/CLI.hpp>

int main(int argc, char** argv) {
  CLI::App app("Turns chart documents into pictures and calls any registered function.", "ostrel");
  app.require_subcommand(0, 1);
  CLI11_PARSE(app, argc, argv);
  return 0;
}
