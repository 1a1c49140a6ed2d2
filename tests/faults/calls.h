/** System calls as they are cut: their names, and the errors that can befall each. */
#ifndef XAS_TEST_FAULTS_CALLS_H
#define XAS_TEST_FAULTS_CALLS_H

#include <span>
#include <string>

/** The name of a system call; "call <number>" for one that has no error worth trying. */
std::string xasCallName(long number);

/** The errors that can befall it; none for one that cannot fail, or whose failure nobody can notice. */
std::span<const int> xasPlausibleErrors(long number);

/** "EIO" and the like. */
std::string xasErrorName(int error);

#endif
