#include "xms/xms_cli.h"

int main(int argc, char **argv)
{
    return xmsMain(argc, argv);
}
