#include "Services/Itemhub/Routes/SignInPage.h"

#include "Services/Itemhub/Blobs/Digest.h"
#include "Services/Itemhub/Routes/Texts.h"

#include <QByteArray>

#include <string_view>

namespace Itemhub::Routes {

namespace {

/// The dashboard's look; with everything inline, the page can forbid the browser to load anything.
constexpr const char* kStyle =
    ":root{color-scheme:light dark;font:16px/1.45 system-ui,sans-serif;"
    "--sheet:light-dark(#ffffff,#1f2529);--line:light-dark(#d5dade,#3a434a);"
    "--faint:light-dark(#566069,#a6b0b8);--main:light-dark(#17637d,#6cc0dc);"
    "color:light-dark(#1b2227,#e8ecef);background:light-dark(#f6f7f8,#15191c)}"
    "*{box-sizing:border-box}"
    "body{margin:0}"
    "main{max-width:26rem;margin:10vh auto;padding:1.5rem 2rem 2rem;background:var(--sheet);"
    "border:1px solid var(--line);border-radius:.6rem}"
    "h1{margin:0;font-size:1.6rem}"
    "p{margin:.5rem 0 1.25rem;color:var(--faint)}"
    "label{display:block;margin-top:1rem;font-weight:600}"
    "a{display:block;margin-top:1rem;text-align:center;color:var(--main)}"
    "input,button{width:100%;min-height:2.5rem;padding:.4rem .6rem;border-radius:.4rem;font:inherit}"
    "input{margin-top:.25rem;border:1px solid var(--faint);background:var(--sheet);color:inherit}"
    "button{margin-top:1.5rem;border:0;background:var(--main);color:light-dark(#ffffff,#0d1d23);"
    "font-weight:600;cursor:pointer}"
    ":focus-visible{outline:3px solid var(--main);outline-offset:2px}"
    "[role=alert]{color:light-dark(#b3261e,#ffb4ab);font-weight:600}"
    "@media(max-width:30rem){main{margin:0;min-height:100vh;border:0;border-radius:0}}";

QString field(const char* name, const QString& title, const QString& value, const char* more)
{
    return QString("<label>%2<input name=\"%1\" value=\"%3\" %4></label>\n")
        .arg(name, title, value.toHtmlEscaped(), more);
}

/// Nothing is run or loaded; the form is sent here, and redirected from here to the program.
std::string policyFor(const QString& goesTo)
{
    static const std::string style = [] {
        Blobs::Digest digest;
        digest.add(kStyle);
        return QByteArray::fromStdString(digest.result()).toBase64().toStdString();
    }();
    return "default-src 'none'; style-src 'sha256-" + style + "'; form-action 'self' " +
           goesTo.toStdString() + "; base-uri 'none'; frame-ancestors 'none'";
}

QString problemOf(const Texts& texts, std::string_view code)
{
    if (code == "link_used")
        return texts.text("SignInLinkUsed",
                          "The link was used already, or is too old. Open the dashboard from the "
                          "program again, or sign in here.");
    if (code == "invitation_used")
        return texts.text("SignInInvitationUsed",
                          "The invitation was used already, is too old, or was taken back.");
    if (code == "provider_failed")
        return texts.text("SignInProviderFailed", "The sign-in there did not succeed. Try again.");
    if (code == "provider_unknown")
        return texts.text("SignInProviderUnknown",
                          "No account is linked to who you are there. Sign in with your password, and link "
                          "your account.");
    if (code == "provider_taken")
        return texts.text("SignInProviderTaken", "Another account is linked to who you are there.");
    if (code == "name_taken")
        return texts.text("SignInNameTaken", "Somebody has that name already. Choose another one.");
    if (code == "bad_name")
        return texts.text("SignInBadName", "That cannot be a name.");
    if (code == "short_password")
        return texts.text("SignInShortPassword", "The password must have at least 10 characters.");
    return code == "too_many_failures"
               ? texts.text("SignInWait",
                            "There were too many wrong passwords. Wait a while, then try again.")
               : texts.text("SignInRefused", "The customer, the name or the password is not right.");
}

} // namespace

QString SignInPage::form(const Texts& texts) const
{
    const bool joins = kind == Kind::Join;
    QString form = QString("<form method=\"post\" action=\"%1\">\n").arg(action);
    for (const auto& [name, value] : hidden)
        form += QString("<input type=\"hidden\" name=\"%1\" value=\"%2\">\n")
                    .arg(name.toHtmlEscaped(), value.toHtmlEscaped());
    if (!joins)
        form += field("customer", texts.text("SignInCustomer", "Customer"), customer,
                      "autocomplete=\"organization\"");
    form += field("account", texts.text("SignInName", "Name"), account,
                  "autocomplete=\"username\" required autofocus");
    form += field("password", texts.text("SignInPassword", "Password"), {},
                  joins ? "type=\"password\" autocomplete=\"new-password\" minlength=\"10\" required"
                        : "type=\"password\" autocomplete=\"current-password\" required");
    form += QString("<button>%1</button>\n</form>\n").arg(title(texts));
    if (!provider.isEmpty())
        form += QString("<a href=\"%1\">%2</a>\n")
                    .arg(providerPlace.toHtmlEscaped(), texts.text("SignInProvider", "Sign in with %1%")
                                                            .replace("%1%", provider.toHtmlEscaped()));
    return form;
}

QString SignInPage::title(const Texts& texts) const
{
    return kind == Kind::Join ? texts.text("SignInJoin", "Join") : texts.text("SignInTitle", "Sign In");
}

QString SignInPage::why(const Texts& texts) const
{
    if (kind == Kind::Join)
        return texts.text("SignInJoinWhy",
                          "You were invited. Choose a name and a password for your account.");
    return kind == Kind::Dashboard
               ? texts.text("SignInDashboard",
                            "Your items, with their versions and what was said about them.")
               : texts.text("SignInWhy",
                            "A program on this computer asks for access to your items. Go on only if "
                            "you have just begun to sign in there.");
}

Http::Response SignInPage::response(const char* problem) const
{
    const Texts texts(languages);
    QString page = QString("<!DOCTYPE html>\n<html lang=\"%1\">\n<head><meta charset=\"utf-8\">"
                           "<meta name=\"viewport\" content=\"width=device-width\"><title>%2</title>"
                           "<style>%3</style></head>\n<body><main>\n<h1>%2</h1>\n<p>%4</p>\n")
                       .arg(texts.language(), title(texts), kStyle, why(texts));
    if (problem)
        page += QString("<p role=\"alert\">%1</p>\n").arg(problemOf(texts, problem));
    page += form(texts) + "</main></body>\n</html>\n";
    Http::Response response;
    response.type = "text/html";
    response.headers = {{"Content-Security-Policy", policyFor(goesTo)}, {"Vary", "Accept-Language"}};
    response.body = page.toStdString();
    return response;
}

} // namespace Itemhub::Routes
