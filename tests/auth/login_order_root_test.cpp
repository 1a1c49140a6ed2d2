// In which order the handlers of the login methods do their work, told by what they log when everything
// fails.
#include "auth/kerberos.h"
#include "auth/ldap.h"
#include "auth/nis.h"
#include "auth/radius.h"
#include "auth/tacacs.h"
#include "auth/update_auth.h"
#include "support/login_files.h"
#include "support/reply.h"

using testing::ElementsAre;
using testing::ElementsAreArray;

namespace {

struct Method {
    XasMsgType msgtype;
    XasUpdateHandler handler;
    std::vector<std::string> types;   /**< as they are looked up */
    std::string noFirstFile;          /**< logged when the list names none of them */
    std::vector<XasLogLine> failures; /**< when none of the files is there */
    std::string lastReply;            /**< code and reason of the last failure */
};

class LoginWorkOrder : public XasLoginFilesTest {
  protected:
    LoginWorkOrder()
    {
        std::filesystem::remove(dir.path("system-auth"));
        std::filesystem::remove(dir.path("nsswitch"));
        dir.write("system-auth/inside", "");
    }

    [[nodiscard]] XasLogLine editFailed(const std::string &file) const
    {
        return xasErrorLine("Error editing " + dir.path(file) + "\n");
    }

    [[nodiscard]] std::vector<Method> methods() const
    {
        const XasLogLine pam = openFailed("system-auth");
        const XasLogLine nsswitch = openFailed("nsswitch");
        const std::string nsswitchReply = "2 Error opening pam.d/system-auth config file";
        return {
            {XMSG_AUTH,
             xasUpdateAuthenOrderCfg,
             {"authentication", "system-auth", "nsswitch"},
             "Error determining r58 authentication config file\n",
             {openFailed("authentication"), xasErrorLine("Error editing network config file\n"), pam,
              nsswitch},
             nsswitchReply},
            {XMSG_NIS,
             xasUpdateNisCfg,
             {"yp", "network", "system-auth", "nsswitch"},
             "Error determining yp.conf config file\n",
             {openFailed("yp"), xasErrorLine("Error editing yp.conf config file\n"), openFailed("network"),
              xasErrorLine("Error editing network config file\n"), pam, nsswitch},
             nsswitchReply},
            {XMSG_LDAP,
             xasUpdateLdapCfg,
             {"openldap", "ldap", "ldaptmpl", "nsswitch", "system-auth"},
             "Error determining openldap config file\n",
             {openFailed("openldap"), xasErrorLine("Error editing openldap config file\n"),
              xasErrorLine("Error editing ldap config file\n"), pam, nsswitch},
             nsswitchReply},
            {XMSG_RADIUS,
             xasUpdateRadiusCfg,
             {"radius", "nsswitch", "system-auth"},
             "Error determining openldap config file\n",
             {openFailed("radius"), xasErrorLine("Error editing ldap config file\n"), nsswitch, pam},
             nsswitchReply},
            {XMSG_KERBEROS,
             xasUpdateKerberosCfg,
             {"krb5tmpl", "krb5", "nsswitch", "system-auth", "hosts"},
             "Error determining kerberos config template file\n",
             {editFailed("krb5"), nsswitch, openFailed("hosts"), editFailed("hosts"), pam},
             "2 Error opening /etc/hosts file"},
            {XMSG_TACACS,
             xasUpdateTacacsCfg,
             {"tacplustmpl", "tacplus", "nsswitch", "system-auth"},
             "Error determining tacplus config template file\n",
             {editFailed("tacplus"), nsswitch, pam},
             nsswitchReply},
        };
    }

    /** A message with all that a Kerberos hosts line needs, and switched on where the others have a switch.
     */
    static XasMessage message(XasMsgType msgtype)
    {
        XasMessageBuilder builder{msgtype};
        builder.set(msgtype == XMSG_AUTH ? "local" : "enabled", 1);
        if (msgtype == XMSG_KERBEROS)
            builder.set("kdc=kdc kdc_ip=1.0.0.0");
        return builder;
    }
};

} // namespace

TEST_F(LoginWorkOrder, BeginsWithTheFileThatIsLookedUpFirst)
{
    for (const Method &method : methods()) {
        SCOPED_TRACE(method.types.front());
        EXPECT_EQ(handle(method.handler, message(method.msgtype), {}), 1);
        EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
        EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine(method.noFirstFile)));
    }
}

TEST_F(LoginWorkOrder, GoesThroughAllFilesAndKeepsTheReasonOfTheLastThatHasOne)
{
    for (const Method &method : methods()) {
        SCOPED_TRACE(method.types.front());
        EXPECT_EQ(handle(method.handler, message(method.msgtype), method.types), 1);
        EXPECT_EQ(xasReplyText(reply), method.lastReply);
        EXPECT_THAT(log.lines(), ElementsAreArray(method.failures));
    }
}
