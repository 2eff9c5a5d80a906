#include "cli/Commands.hpp"

int main(int argc, char** argv) {
    return ostrivane::cli::run(argc, argv);
}
