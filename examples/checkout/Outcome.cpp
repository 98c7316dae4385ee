#include "examples/checkout/Outcome.h"

#include <algorithm>
#include <array>

namespace korvane::checkout {

namespace {

const QString kPaid = QStringLiteral("Thank you");
const QString kNotPaid = QStringLiteral("Not paid");
const QString kNoCharge = QStringLiteral(" Your card has not been charged.");

struct StatusWords {
    const char* status;
    bool isPaid;
    const char* words;
};

/// What a transaction status means to a shop.
constexpr std::array<StatusWords, 8> kStatuses{{
    {"Y", true, "Your bank has confirmed that it was you."},
    {"A", true, "Your bank could not ask you, but stands for the payment."},
    {"I", true, "Your bank has taken note of the payment."},
    {"N", false, "Your bank has declined: it could not make sure that it was you."},
    {"U", false, "Your bank cannot confirm payments at the moment."},
    {"R", false, "Your bank has refused the payment."},
    {"C", false, "Your bank asks for another confirmation, which this shop does not offer."},
    {"D", false, "Your bank will ask you later, on another way. We shall hear from it."},
}};

QString text(const std::string& bytes) {
    return QString::fromStdString(bytes);
}

} // namespace

Outcome frictionlessOutcome() {
    return {.ending = "frictionless Y",
            .mood = Mood::paid,
            .title = kPaid,
            .words = "Your bank knows enough and asked for nothing more.",
            .facts = {{"Ending", "no challenge"}}};
}

Outcome outcomeOf(const CompletionEvent& event) {
    const QString status = text(event.getTransactionStatus());
    const auto* row = std::ranges::find_if(
        kStatuses, [&status](const StatusWords& words) { return status == QLatin1String(words.status); });
    const bool isKnown = row != kStatuses.end();
    const bool isPaid = isKnown && row->isPaid;
    const QString words = isKnown ? QString::fromUtf8(row->words) : "Your bank's answer has no meaning here.";
    return {.ending = "completed " + status,
            .mood = isPaid ? Mood::paid : Mood::refused,
            .title = isPaid ? kPaid : kNotPaid,
            .words = isPaid ? words : words + kNoCharge,
            .facts = {{"Ending", "completed"},
                      {"Status", status},
                      {"Transaction", text(event.getSdkTransactionID())}}};
}

Outcome cancelledOutcome() {
    return {.ending = "cancelled",
            .mood = Mood::calm,
            .title = "Cancelled",
            .words = "You went back before the payment was confirmed." + kNoCharge +
                     " Your cart is as you left it.",
            .facts = {{"Ending", "cancelled"}}};
}

Outcome timedOutOutcome() {
    return {.ending = "timedout",
            .title = "Out of time",
            .words = "Your bank's question was not answered in time." + kNoCharge,
            .facts = {{"Ending", "timedout"}}};
}

Outcome outcomeOf(const ProtocolErrorEvent& event) {
    const ErrorMessage& error = event.getErrorMessage();
    return {.ending = "protocolError " + text(error.getErrorCode()),
            .title = kNotPaid,
            .words = "Your bank and this app could not make themselves understood." + kNoCharge,
            .facts = {{"Ending", "protocolError"},
                      {"Code", text(error.getErrorCode())},
                      {"Description", text(error.getErrorDescription())},
                      {"Details", text(error.getErrorDetails())},
                      {"Transaction", text(event.getSdkTransactionID())}}};
}

Outcome outcomeOf(const RuntimeErrorEvent& event) {
    return {.ending = "runtimeError",
            .title = kNotPaid,
            .words = "This app could not finish the conversation with your bank." + kNoCharge,
            .facts = {{"Ending", "runtimeError"},
                      {"Code", text(event.getErrorCode())},
                      {"Message", text(event.getErrorMessage())}}};
}

Outcome unheardOutcome() {
    return {.ending = "none",
            .title = kNotPaid,
            .words = "Your bank has fallen silent." + kNoCharge,
            .facts = {{"Ending", "none was told"}}};
}

Outcome outcomeOf(const SdkError& error) {
    return {.ending = "SdkError",
            .title = kNotPaid,
            .words = "The payment could not be prepared." + kNoCharge,
            .facts = {{"Ending", "SdkError"}, {"Message", text(error.localizedDescription())}}};
}

Outcome themeFailure(const QString& reason) {
    return {.ending = "no theme",
            .title = kNotPaid,
            .words = "The look of the bank's screens could not be read." + kNoCharge,
            .facts = {{"Ending", "no challenge"}, {"Reason", reason}}};
}

Outcome serverFailure(const QString& reason) {
    return {.ending = "no answer",
            .title = kNotPaid,
            .words = "Our own server could not prepare the payment." + kNoCharge,
            .facts = {{"Ending", "no challenge"}, {"Reason", reason}}};
}

} // namespace korvane::checkout
