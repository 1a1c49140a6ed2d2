/** Records that no sensible sender puts on the daemon's queue: random bytes, random types, wrong sizes. */
#ifndef XAS_TEST_SUPPORT_RANDOM_RECORDS_H
#define XAS_TEST_SUPPORT_RANDOM_RECORDS_H

#include <random>
#include <string>

struct XasRandomRecord {
    long mtype;
    std::string bytes;
};

/** The same records for the same seed. */
class XasRandomRecords {
  public:
    explicit XasRandomRecords(unsigned seed) : engine{seed} {}

    XasRandomRecord next();

  private:
    std::mt19937 engine;
    std::uint32_t count = 0;
};

#endif
