/**
 * Calls into the C library that fail on request. The test program defines the functions listed in
 * xas_test_faults.cpp itself and hands on to the C library's whatever is not to fail. What the C library
 * calls inside itself is not seen.
 */
#ifndef XAS_TEST_SUPPORT_FAULTS_H
#define XAS_TEST_SUPPORT_FAULTS_H

#include <cstddef>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

inline constexpr unsigned XAS_ALWAYS = std::numeric_limits<unsigned>::max();

/** While it lives, calls of `function` fail with `error`: `times` of them after the first `skip`. */
class XasFault {
  public:
    XasFault(std::string_view function, int error, unsigned skip = 0, unsigned times = XAS_ALWAYS);
    /** Of the renames only those in whose "FROM -> TO" this text stands; the others are not even counted. */
    XasFault(std::string_view function, int error, std::string_view onlyRenames);
    ~XasFault();
    XasFault(const XasFault &) = delete;
    XasFault &operator=(const XasFault &) = delete;

    /** How many calls have been made, the failed ones included. */
    [[nodiscard]] unsigned calls() const;

  private:
    std::string name;
};

/** While it lives, notes the calls of fsync ("fsync PATH"), rename ("rename FROM -> TO") and msgsnd in their
 * order. */
class XasCallOrder {
  public:
    XasCallOrder();
    ~XasCallOrder();
    XasCallOrder(const XasCallOrder &) = delete;
    XasCallOrder &operator=(const XasCallOrder &) = delete;

    /** The calls so far. */
    [[nodiscard]] const std::vector<std::string> &calls() const { return noted; }

  private:
    std::vector<std::string> noted;
};

/** While it lives, operator new throws std::bad_alloc for blocks of at least `size` bytes after `skip` of
 * them. */
class XasFailingNew {
  public:
    explicit XasFailingNew(std::size_t size = 1, unsigned skip = 0, unsigned times = XAS_ALWAYS);
    ~XasFailingNew();
    /** True when a block was refused. */
    [[nodiscard]] static bool hasFailed();
    XasFailingNew(const XasFailingNew &) = delete;
    XasFailingNew &operator=(const XasFailingNew &) = delete;
};

#endif
