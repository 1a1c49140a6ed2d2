/** Ethernet ports for tests: eth0 and eth1 as virtual pairs whose far ends a test pulls. Private root only.
 */
#ifndef XAS_TEST_SUPPORT_LINK_H
#define XAS_TEST_SUPPORT_LINK_H

/** Ethernet port "eth<n>" with its far end "peer<n>". The link is down at first. */
class XasTestLink {
  public:
    explicit XasTestLink(int portNumber);
    ~XasTestLink();
    XasTestLink(const XasTestLink &) = delete;
    XasTestLink &operator=(const XasTestLink &) = delete;

    void plug() const;
    void unplug() const;

  private:
    int port;
};

#endif
