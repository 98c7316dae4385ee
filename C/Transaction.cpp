#include "C/Objects.h"
#include "Cardholder/Values.h"

using namespace korvane;
using namespace korvane::c;

namespace {

/// Tells a program the ending of a challenge: the first one, since a challenge whose time ran out before its
/// first screen may go on unseen. Main queue only.
class ProgramsReceiver final : public ChallengeStatusReceiver {
public:
    ProgramsReceiver(korvane_ending_function function, void* context)
        : function_(function), context_(context) {}

    void completed(const CompletionEvent& event) override {
        korvane_ending ending{};
        ending.sdk_transaction_id = event.getSdkTransactionID().c_str();
        ending.transaction_status = event.getTransactionStatus().c_str();
        tell(KORVANE_COMPLETED, ending);
    }
    void cancelled() override { tell(KORVANE_CANCELLED, {}); }
    void timedout() override { tell(KORVANE_TIMED_OUT, {}); }
    void protocolError(const ProtocolErrorEvent& event) override {
        const ErrorMessage& message = event.getErrorMessage();
        korvane_ending ending{};
        ending.sdk_transaction_id = event.getSdkTransactionID().c_str();
        ending.error_code = message.getErrorCode().c_str();
        ending.error_text = message.getErrorDescription().c_str();
        ending.error_details = message.getErrorDetails().c_str();
        ending.acs_transaction_id = message.getTransactionID().c_str();
        tell(KORVANE_PROTOCOL_ERROR, ending);
    }
    void runtimeError(const RuntimeErrorEvent& event) override {
        korvane_ending ending{};
        ending.error_code = event.getErrorCode().c_str();
        ending.error_text = event.getErrorMessage().c_str();
        tell(KORVANE_RUNTIME_ERROR, ending);
    }

private:
    void tell(korvane_ending_kind kind, korvane_ending ending) {
        ending.kind = kind;
        if (const auto function = std::exchange(function_, nullptr)) function(context_, &ending);
    }

    korvane_ending_function function_;
    void* const context_;
};

std::shared_ptr<ChallengeParameters> parametersOf(const korvane_challenge_parameters& given) {
    auto parameters = std::make_shared<ChallengeParameters>();
    parameters->tdsServerTransactionId =
        textIfPresent(given.three_ds_server_transaction_id, "three_ds_server_transaction_id");
    parameters->acsTransactionId = textIfPresent(given.acs_transaction_id, "acs_transaction_id");
    parameters->acsRefNumber = textIfPresent(given.acs_reference_number, "acs_reference_number");
    parameters->acsSignedContent = textIfPresent(given.acs_signed_content, "acs_signed_content");
    parameters->tdsRequestorAppURL =
        textIfPresent(given.three_ds_requestor_app_url, "three_ds_requestor_app_url");
    return parameters;
}

} // namespace

korvane_result korvane_transaction_create(korvane_service* service, const char* directory_server,
                                          const char* message_version, korvane_transaction** transaction,
                                          korvane_error* error) {
    return call(error, [&] {
        const Visit visit;
        const auto found = visit.find<ServiceObject>(service, "service");
        require(transaction, "transaction");
        const std::string server = textOf(directory_server, "directory_server");
        const std::string version = textOf(message_version, "message_version");
        const ServiceObject::Turn turn(*found);
        *transaction = Handles::shared().add<korvane_transaction>(
            std::make_shared<TransactionObject>(found->service.createTransaction(server, version)));
    });
}

korvane_result korvane_transaction_authentication_request(korvane_transaction* transaction,
                                                          korvane_authentication_request* request,
                                                          korvane_error* error) {
    return call(error, [&] {
        const Visit visit;
        const auto found = visit.find<TransactionObject>(transaction, "transaction");
        require(request, "request");
        const AuthenticationRequestParameters& own = found->request;
        *request = {.device_data = own.getDeviceData().c_str(),
                    .sdk_transaction_id = own.getSDKTransactionID().c_str(),
                    .sdk_app_id = own.getSDKAppID().c_str(),
                    .sdk_reference_number = own.getSDKReferenceNumber().c_str(),
                    .sdk_ephemeral_public_key = own.getSDKEphemeralPublicKey().c_str(),
                    .message_version = own.getMessageVersion().c_str()};
    });
}

korvane_result korvane_transaction_authentication_request_json(korvane_transaction* transaction, char** json,
                                                               korvane_error* error) {
    return call(error, [&] {
        const Visit visit;
        const auto found = visit.find<TransactionObject>(transaction, "transaction");
        require(json, "json");
        *json = givenAway(cardholder::requestValues(found->request).dump());
    });
}

korvane_result korvane_transaction_challenge(korvane_transaction* transaction,
                                             const korvane_challenge_parameters* parameters, int64_t minutes,
                                             korvane_ending_function ending, void* context,
                                             korvane_error* error) {
    return call(error, [&] {
        const Visit visit;
        const auto found = visit.find<TransactionObject>(transaction, "transaction");
        auto given = parametersOf(copyOf(parameters, "parameters"));
        require(ending, "ending");
        requireReadyForChallenge(visit, minutes);
        found->takeStart();
        found->transaction->doChallenge(std::move(given), std::make_shared<ProgramsReceiver>(ending, context),
                                        minutes);
    });
}
