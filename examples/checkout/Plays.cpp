#include "examples/checkout/Plays.h"

#include <array>

namespace korvane::checkout {

namespace {

constexpr const char* kCode = "4721";
constexpr const char* kWrongCode = "1111";

void nothing(Cardholder& /*me*/) {}

void enter(Cardholder& me, const char* code) {
    me.typeCode(code);
    me.closeKeyboard();
    me.tap("Confirm");
}

/// All that the screen has: a section, the keyboard, the question about the shop.
void readAndEnter(Cardholder& me) {
    me.see("We have sent a code");
    me.shoot("screen");
    me.tap("Why am I asked?");
    me.see("two proofs");
    me.shoot("why");
    me.typeCode(kCode);
    me.shoot("typed");
    me.closeKeyboard();
    me.tap("Trust Kettle & Pine and ask no more codes for it");
    me.shoot("trusted");
    me.tap("Confirm");
    me.shootMoving("checking");
}

void justEnter(Cardholder& me) {
    me.see("We have sent a code");
    me.shoot("screen");
    me.typeCode(kCode);
    me.shoot("typed");
    me.closeKeyboard();
    me.tap("Confirm");
}

void chooseOne(Cardholder& me) {
    me.see("Where shall the code go?");
    me.shoot("choice");
    me.tap("Mobile ending in 21");
    me.shoot("chosen");
    me.tap("Send the code");
    me.see("The code is on its way");
}

void chooseThenEnter(Cardholder& me) {
    chooseOne(me);
    me.shoot("code");
    enter(me, kCode);
}

/// The device is laid on its side with half of the code typed, which goes along.
void chooseThenTurn(Cardholder& me) {
    chooseOne(me);
    me.typeCode("47");
    me.shoot("upright");
    me.tapItem("turn");
    me.waitUntil("the device on its side", [&me] { return me.host().width() > me.host().height(); });
    me.see("The code is on its way");
    me.shoot("lying");
    me.typeCode("21");
    me.closeKeyboard();
    me.tap("Confirm");
}

void chooseSeveral(Cardholder& me) {
    me.see("Which payments were yours?");
    me.shoot("choices");
    me.tap("Book shop, EUR 23.40");
    me.tap("Train ticket, EUR 41.00");
    me.shoot("chosen");
    me.tap("Continue");
}

/// A low screen shows less than it has.
void scrollAndChoose(Cardholder& me) {
    me.see("Which payments were yours?");
    me.tap("Why am I asked?");
    me.see("Only you know");
    me.lookAround();
    chooseSeveral(me);
}

void confirmInApp(Cardholder& me) {
    me.see("Open the Tarnbeck app");
    me.shoot("app");
    me.tap("I have confirmed");
    me.see("The app has not told us anything yet");
    me.shoot("notYet");
    me.tap("I need help");
    me.see("shows the payment under Today");
    me.shoot("help");
    me.tap("I have confirmed");
}

void fillPage(Cardholder& me) {
    me.fillPage("472100");
}

void cancel(Cardholder& me) {
    me.see("We have sent a code");
    me.shoot("screen");
    me.tap("Cancel");
}

void enterWrongCodes(Cardholder& me) {
    me.see("We have sent a code");
    enter(me, kWrongCode);
    me.see("That is not the code");
    me.shoot("warning");
    enter(me, kWrongCode);
}

void watchTimeGo(Cardholder& me) {
    me.see("We have sent a code");
    me.shoot("screen");
}

using enum Hold;

constexpr std::array<Play, 16> kPlays{{
    {"frictionless", "no challenge", "frictionless", "default", upright, "frictionless Y", nothing},
    {"code", "text", "code", "default", upright, "completed Y", readAndEnter},
    {"choice", "single select, turned", "choice", "default", upright, "completed Y", chooseThenTurn},
    {"choices", "multi select", "choices", "default", upright, "completed Y", chooseSeveral},
    {"app", "out of band", "app", "default", upright, "completed Y", confirmInApp},
    {"page", "HTML", "page", "default", upright, "completed Y", fillPage},
    {"cancelled", "text", "code", "default", upright, "cancelled", cancel},
    {"declined", "text", "declined", "default", upright, "completed N", enterWrongCodes},
    {"bankError", "text", "bankError", "default", upright, "protocolError 403", justEnter},
    {"silent", "none came", "silent", "default", upright, "protocolError 101", nothing},
    {"forged", "none came", "forged", "default", upright, "runtimeError", nothing},
    {"bank", "text", "code", "bank", upright, "completed Y", justEnter},
    {"dark", "single select", "choice", "dark", upright, "completed Y", chooseThenEnter},
    {"large", "out of band", "app", "large", upright, "completed Y", confirmInApp},
    {"lying", "multi select", "choices", "bank", lying, "completed Y", scrollAndChoose},
    {"slow", "text", "slow", "default", upright, "timedout", watchTimeGo},
}};

} // namespace

std::span<const Play> allPlays() {
    return kPlays;
}

} // namespace korvane::checkout
