#include "xms/cli.h"

int main(int argc, char **argv)
{
    return xmsMain(argc, argv);
}
