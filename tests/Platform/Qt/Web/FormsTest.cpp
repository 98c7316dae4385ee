#include "tests/Platform/Qt/Web/ShownPage.h"

#include <QtTest>

#include <gtest/gtest.h>

namespace korvane {
namespace {

/// Forms go to the host "no", which the policy keeps from the network.
const std::string kPost = "<form id=f method=post action=https://no/form>";
const std::string kGet = "<form id=f action='https://no/form?old=1#end'>";
const std::string kOne = "<input id=i name=a value=1>";
const std::string kButton = "<button id=b name=b value=2>B</button>";
const std::string kPage = kPost + kOne + kButton + "</form>";

std::string script(const std::string& text) {
    return "<script>" + text + "</script>";
}

std::string frame(const std::string& page, const std::string& attributes = "") {
    return "<iframe " + attributes + " srcdoc=\"" + page + "\"></iframe>";
}

TEST(WebPageForms, AreAskedAboutWithWhatTheBrowserWouldSend) {
    const std::string noBody = "POST https://no/form (no body)";
    ShownPage::expect({
        {"text, area, boxes and choices",
         kPost +
             "<input name=who value='Zo\u00eb &amp; Co~*'><textarea name=note>one\ntwo</textarea>"
             "<input type=checkbox name=a value=1 checked><input type=checkbox name=b>"
             "<input type=checkbox name=c checked><input name=off value=1 disabled>"
             "<select name=s multiple><option selected>x<option>y<option selected>z</select>" +
             kButton,
         "#b", "POST https://no/form who=Zo%C3%AB+%26+Co%7E*&note=one%0D%0Atwo&a=1&c=on&s=x&s=z&b=2"},
        {"a button with an address and a method of its own",
         kPost + kOne + "<button id=b formaction=https://no/other formmethod=get>B</button>", "#b",
         "GET https://no/other?a=1"},
        {"a picture as button", kPost + "<input type=image id=i name=i width=40 height=20>", "#i",
         "POST https://no/form i.x=20&i.y=10"},
        {"by GET, to the letter", kGet + "<input name=a value='~*-._ +&amp;\u20ac'>", "f.submit()",
         "GET https://no/form?a=%7E*-._+%2B%26%E2%82%AC#end"},
        {"by POST, without data, to an address from the page's base",
         "<base href=https://no/x/><form id=f method=post action=../y>", "f.submit()", "POST https://no/y "},
        {"a charset of its own, and what it lacks",
         "<form id=f method=post accept-charset='none iso-8859-1' action=https://no/form>"
         "<input type=hidden name=_charset_><input name=a value='\u00e9\u20ac\u2192'>",
         "f.submit()", "POST https://no/form _charset_=windows-1252&a=%E9%80%26%238594%3B"},
        {"as much as is taken", kPage, "i.value = 'x'.repeat((1 << 20) - 2); f.submit()",
         "POST https://no/form a=" + std::string((1 << 20) - 2, 'x')},
        {"as many bytes more", kPage, "i.value = '\u00e9'.repeat(1 << 19); f.submit()", noBody},
    });
}

TEST(WebPageForms, AreTakenHoweverThePageSendsThem) {
    const std::string one = "POST https://no/form a=1";
    ShownPage::expect({
        {"by submit()", kPage, "f.submit()", one},
        {"by requestSubmit() and a button", kPage, "f.requestSubmit(b)", one + "&b=2"},
        {"changed by the form's handlers", kPage,
         "f.onsubmit = () => { i.value = 3; f.action = 'https://no/new' };"
         "f.onformdata = (e) => e.formData.append('z', '\\n'); f.requestSubmit(b)",
         "POST https://no/new a=3&b=2&z=%0D%0A"},
        {"kept back by the page", kPage, "f.onsubmit = () => false; f.requestSubmit(b)", ""},
        {"twice at once", kPage, "f.submit(); i.value = 6; f.submit()", "POST https://no/form a=6"},
        {"not at all: its data are read and its address is gone to", kPage,
         "new FormData(f); location = f.action", "GET https://no/form"},
        {"by a frame without an address", "",
         "const frame = "
         "document.documentElement.appendChild(document.createElement('iframe')).contentDocument;"
         "frame.body.innerHTML = `" +
             kPage + "`; frame.forms[0].submit()",
         one},
        {"into a frame", kPage + "<iframe name=x></iframe>", "f.target = 'x'; f.submit()", one},
        {"while the page loads", kPage + script("f.submit()"), "", one},
        {"by a frame", frame(kPage + script("f.submit()")), "", one},
        {"by a frame of another origin",
         frame(kPage + script("f.submit()"), "sandbox='allow-scripts allow-forms'"), "", one},
        {"by a page that wrote itself anew", "",
         "document.open(); document.write(`" + kPage + "`); document.close(); setTimeout(() => f.submit())",
         one},
    });
}

TEST(WebPageForms, CannotBeHiddenOrForgedByThePage) {
    const std::string taken = "POST https://no/form a=1&b=2";
    ShownPage::expect({
        {"names that hide properties",
         "<img name=createElementNS><img name=characterSet>" + kPost +
             "<input name=action value=x><input name=method><input name=enctype><input name=submit>" +
             kButton,
         "#b", "POST https://no/form action=x&method=&enctype=&submit=&b=2"},
        {"forged events", kPage,
         "const forged = new FormData(); forged.append('a', 'forged'); f.onformdata = (e) => e.isTrusted &&"
         "f.dispatchEvent(new FormDataEvent('formdata', { formData: forged, bubbles: true }));"
         "f.requestSubmit(b)",
         taken},
        {"overridden prototypes",
         script("for (const type of [FormData, HTMLFormElement, EventTarget, Event, Document, Array, JSON])"
                "for (const holder of [type, type.prototype ?? {}])"
                "for (const name of Object.getOwnPropertyNames(holder))"
                "try { if (name != 'constructor') holder[name] = () => 'forged' } catch {}") +
             kPage,
         "#b", taken},
        {"listeners that stop all others",
         script("for (const name of ['submit', 'formdata'])"
                "addEventListener(name, (e) => e.stopImmediatePropagation(), true)") +
             kPage,
         "#b", taken},
    });
    EXPECT_EQ(ShownPage::make()->evaluate("[typeof qt, typeof sendAgain]"), "undefined,undefined");
}

TEST(WebPageForms, SendAFileAsItsName) {
    const auto page = ShownPage::make("<form id=f method=post enctype=multipart/form-data action=https://no/>"
                                      "<input name='a\"b' value=1><input id=file type=file name=file>");
    page->run("const all = new DataTransfer();"
              "all.items.add(new File(['secret'], 'n.txt', { type: 'text/x' })); file.files = all.files; "
              "f.submit()");
    ASSERT_TRUE(ShownPage::await([&] { return !page->asked().empty(); }));
    const std::string& asked = page->asked().front();
    const std::string line = asked.substr(17, asked.find('\r') - 17);
    EXPECT_EQ(asked, "POST https://no/ " + line +
                         "\r\nContent-Disposition: form-data; name=\"a%22b\"\r\n\r\n1\r\n" + line +
                         "\r\nContent-Disposition: form-data; name=\"file\"; filename=\"n.txt\"\r\n" +
                         "Content-Type: text/x\r\n\r\n\r\n" + line + "--\r\n");
}

TEST(WebPageForms, TakeKeysAndTheReturnKeySends) {
    const auto page = ShownPage::make(kPost + "<input id=code name=code>" + kButton);
    page->click("#code");
    ASSERT_TRUE(ShownPage::await([&] { return page->evaluate("document.activeElement.id") == "code"; }));
    for (const QChar key : QStringLiteral("12\u00e9"))
        QTest::sendKeyEvent(QTest::Click, &page->window(), Qt::Key_unknown, key, Qt::NoModifier);
    QTest::keyClick(&page->window(), Qt::Key_Return);
    EXPECT_TRUE(ShownPage::await([&] { return !page->asked().empty(); }));
    EXPECT_EQ(page->asked(), std::vector<std::string>{"POST https://no/form code=12%C3%A9&b=2"});
}

} // namespace
} // namespace korvane
