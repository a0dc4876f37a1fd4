// brenlow — the component's command line.
#include <iostream>
#include <string>
#include <vector>

#include "app/cli/cli.h"

int main(int argc, char** argv) {
    std::vector<std::string> args(argv + 1, argv + argc);
    return brenlow::cli::run(args, std::cout, std::cerr);
}
