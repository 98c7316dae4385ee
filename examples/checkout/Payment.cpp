#include "examples/checkout/Payment.h"

#include "Platform/Platform.h"

#include <utility>

namespace korvane::checkout {

namespace {

constexpr const char* kMessageVersion = "2.2.0";
constexpr const char* kLocale = "en-GB";
constexpr Seconds kServerLimit{15};

/// The certificates of the one directory server of this example, which are made anew with each run.
class SiteCertificates final : public TransactionCertsProducerProtocol {
public:
    explicit SiteCertificates(const AcsSite& site)
        : certificates_{contentsOfFile(site.deviceDataEC.toStdString()),
                        contentsOfFile(site.directoryServerRoot.toStdString()), CertAlgorithm::EC,
                        site.directoryServerID.toStdString()} {}

    [[nodiscard]] TransactionCerts getCerts(const std::string& /*directoryServerID*/) override {
        return certificates_;
    }

private:
    TransactionCerts certificates_;
};

Bytes requestBody(const AuthenticationRequestParameters& request) {
    const JSON body{{"deviceData", request.getDeviceData()},
                    {"sdkTransId", request.getSDKTransactionID()},
                    {"sdkAppID", request.getSDKAppID()},
                    {"sdkReferenceNum", request.getSDKReferenceNumber()},
                    {"ephemeralPublic", JSON::parse(request.getSDKEphemeralPublicKey())},
                    {"messageVersion", request.getMessageVersion()}};
    return toBytes(body.dump());
}

std::optional<std::string> textOf(const JSON& answer, const char* name) {
    const auto found = answer.find(name);
    if (found == answer.end() || !found->is_string()) return std::nullopt;
    return found->get<std::string>();
}

} // namespace

Payment::Payment(const Card& card, korvane::Theme look, Ended ended)
    : card_(card), look_(std::move(look)), ended_(std::move(ended)) {}

void Payment::begin(Acs& acs) {
    acs.open(card_.scenario,
             [weak = weak_from_this()](const std::optional<AcsSite>& site, const QString& error) {
                 const auto self = weak.lock();
                 if (!self) return;
                 if (site)
                     self->createTransaction(*site);
                 else
                     self->end(serverFailure(error));
             });
}

void Payment::createTransaction(const AcsSite& site) {
    try {
        service_.setCertProducer(std::make_shared<SiteCertificates>(site));
        service_.initialize(std::make_shared<ConfigParameters>(), look_.customization, look_.constraints,
                            nullptr, Locale{kLocale});
        transaction_ = service_.createTransaction(site.directoryServerID.toStdString(), kMessageVersion);
        authenticate(site);
    } catch (const SdkError& error) {
        end(outcomeOf(error));
    } catch (const Failure& error) {
        end(serverFailure(QString::fromStdString(error.localizedDescription())));
    }
}

/// In place of the shop's own server, which would add the card's data and pass the request on.
void Payment::authenticate(const AcsSite& site) {
    const auto url = URL::make(site.url.toStdString() + "/authenticate");
    if (!url) {
        end(serverFailure("The server has no address."));
        return;
    }
    URLRequest request{*url};
    request.httpMethod = "POST";
    request.httpHeaderFields = {{"Content-Type", "application/json"}};
    request.httpBody = requestBody(transaction_->getAuthenticationRequestParameters());
    request.timeoutInterval = kServerLimit;
    URLSessionConfiguration configuration;
    configuration.timeoutIntervalForResource = kServerLimit;
    const auto session = Platform::current().makeURLSession(configuration);
    session
        ->dataTask(request,
                   [weak = weak_from_this()](std::optional<Bytes> body, std::optional<std::string> error) {
                       Platform::current().dispatch().mainQueue().async(
                           [weak, body = std::move(body), error = std::move(error)] {
                               if (const auto self = weak.lock()) self->takeAnswer(body, error);
                           });
                   })
        ->resume();
}

/// The ACS of this example would ask every cardholder; the card says whether its bank does.
void Payment::takeAnswer(const std::optional<Bytes>& body, const std::optional<std::string>& error) {
    const auto answer = body ? JSONSerialization::jsonObject(asText(*body)) : std::nullopt;
    if (!answer || !answer->is_object() || !answer->contains("acsTransID"))
        end(serverFailure(QString::fromStdString(error.value_or("The answer is none."))));
    else if (card_.flow == Flow::frictionless)
        end(frictionlessOutcome());
    else
        challenge(*answer);
}

void Payment::challenge(const JSON& answer) {
    const auto parameters = std::make_shared<ChallengeParameters>();
    parameters->tdsServerTransactionId = textOf(answer, "threeDSServerTransID");
    parameters->acsTransactionId = textOf(answer, "acsTransID");
    parameters->acsRefNumber = textOf(answer, "acsRefNumber");
    parameters->acsSignedContent = textOf(answer, "acsSignedContent");
    parameters->tdsRequestorAppURL = textOf(answer, "threeDSRequestorAppURL");
    transaction_->doChallenge(parameters, shared_from_this(), card_.minutes);
}

/// The transaction holds this object as its receiver, so that it is let go here.
void Payment::end(const Outcome& outcome) {
    const auto ended = std::exchange(ended_, nullptr);
    if (!ended) return;
    const auto self = shared_from_this();
    transaction_ = nullptr;
    ended(outcome);
}

} // namespace korvane::checkout
