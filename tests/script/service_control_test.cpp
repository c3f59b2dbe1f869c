#include "till/script/script_line.h"
#include "till/script/service_control.h"

#include <gtest/gtest.h>

#include <functional>

using namespace Qt::StringLiterals;
using till::ServiceControl;

// Which server a script means by a name.

namespace {

[[nodiscard]] ServiceControl twoServers()
{
    return ServiceControl({ { u"first"_s, QUrl(u"http://127.0.0.1:81/svc"_s), QUrl(u"http://127.0.0.1:82/"_s) },
                            { u"second"_s, QUrl(u"http://127.0.0.1:83/svc"_s), QUrl(u"http://127.0.0.1:84/"_s) } });
}

[[nodiscard]] std::string refusal(const std::function<void()>& call)
{
    try {
        call();
    } catch (const till::ScriptError& error) {
        return error.text().toStdString();
    }
    return "(none)";
}

} // namespace

TEST(ServiceControl, ServerIsFoundByItsNameOrIsTheFirst)
{
    const ServiceControl control = twoServers();
    EXPECT_FALSE(control.isEmpty());
    EXPECT_EQ(control.server(u"second"_s).control.port(), 84);
    EXPECT_EQ(control.server({}).control.port(), 82);
}

TEST(ServiceControl, ServerThatIsNotThereIsRefused)
{
    EXPECT_EQ(refusal([] { (void)twoServers().server(u"third"_s); }), "there is no server \"third\"");
    EXPECT_EQ(refusal([] { (void)ServiceControl().server({}); }), "there is no sandbox service to control; name it with --sandbox NAME=SERVICE,CONTROL");
    EXPECT_EQ(refusal([] { (void)ServiceControl().server(u"first"_s); }), "there is no sandbox service to control; name it with --sandbox NAME=SERVICE,CONTROL");
    EXPECT_TRUE(ServiceControl().isEmpty());
}

TEST(ServiceControl, AddressHasTheNameOfItsServer)
{
    const ServiceControl control = twoServers();
    EXPECT_EQ(control.nameOf(u"http://127.0.0.1:83/other"_s).toStdString(), "second");
    EXPECT_EQ(control.nameOf(u"http://127.0.0.1:85/"_s).toStdString(), "http://127.0.0.1:85/");
}
