#include "import/InputFile.h"

std::FILE *openInputFile(const char *name)
{
    return std::fopen(name, "r");
}
