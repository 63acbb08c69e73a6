#include "app/Entry.h"

int main(int argc, char** argv) {
    return tavocal::runProgram(argc, argv);
}
