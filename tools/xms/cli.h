/** The command line of xms. */
#ifndef XAS_XMS_CLI_H
#define XAS_XMS_CLI_H

/** Runs the program; returns its exit status (XmsExit). */
int xmsMain(int argc, char **argv);

#endif
