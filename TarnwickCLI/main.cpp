#include "TarnwickCLI/Cli.hpp"

int main(int argc, char** argv) { return tarnwick::cli::run(argc, argv); }
