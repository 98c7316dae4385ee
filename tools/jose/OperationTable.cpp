#include "tools/jose/OperationTable.h"

#include "tools/jose/Operations.h"

#include <algorithm>
#include <array>

namespace korvane::jose {

using namespace input;

namespace {

using enum MemberType;
using enum Presence;

constexpr Member kOp{"op"};

constexpr std::array kEncrypt{kOp,
                              Member{"alg"},
                              Member{"enc"},
                              Member{"key", object},
                              Member{"payload"},
                              Member{"header", object, optional}};
constexpr std::array kDecrypt{kOp, Member{"jwe"}, Member{"key", object}};
constexpr std::array kSign{kOp, Member{"alg"}, Member{"key", object}, Member{"payload"},
                           Member{"header", object, optional}};
constexpr std::array kVerify{kOp, Member{"jws"}, Member{"key", object}};
constexpr std::array kVerifySignature{kOp, Member{"alg"}, Member{"key", object}, Member{"input"},
                                      Member{"signature"}};
constexpr std::array kThumbprint{kOp, Member{"key", object}};
constexpr std::array kEcdh{kOp, Member{"private", object}, Member{"public", object}};
constexpr std::array kConcatKdf{kOp,
                                Member{"z"},
                                Member{"keyDataLen", number},
                                Member{"algorithmID"},
                                Member{"partyUInfo"},
                                Member{"partyVInfo"},
                                Member{"suppPubInfo"},
                                Member{"suppPrivInfo", text, optional}};

constexpr std::array<Operation, 8> kOperations{{
    {"jwe.encrypt", kEncrypt, encryptJWE},
    {"jwe.decrypt", kDecrypt, decryptJWE},
    {"jws.sign", kSign, signJWS},
    {"jws.verify", kVerify, verifyJWS},
    {"signature.verify", kVerifySignature, verifySignature},
    {"jwk.thumbprint", kThumbprint, thumbprintJWK},
    {"ecdh", kEcdh, deriveECDH},
    {"concatKdf", kConcatKdf, deriveConcatKDF},
}};

const std::string& requireOp(const JSON& line) {
    const auto op = line.find(kOp.name);
    if (op == line.end()) throw memberError(InputErrorCase::missingMember, kOp.name, "is missing.");
    if (!op->is_string()) throw memberError(InputErrorCase::wrongType, kOp.name, "must be a string.");
    return op->get_ref<const std::string&>();
}

} // namespace

JSON performLine(const JSON& line) {
    const std::string& name = requireOp(line);
    const auto* operation = std::find_if(kOperations.begin(), kOperations.end(),
                                         [&name](const Operation& row) { return row.name == name; });
    if (operation == kOperations.end())
        throw memberError(InputErrorCase::unknownOp, kOp.name, "names no operation: " + name);
    return operation->perform(Arguments(line, operation->members));
}

std::string operationHelp() {
    std::string help;
    for (const Operation& operation : kOperations) {
        help += "  " + std::string(operation.name);
        for (const Member& member : operation.members.subspan(1)) {
            const bool isOptional = member.presence == optional;
            help += (isOptional ? " [" : " ") + std::string(member.name) + (isOptional ? "]" : "");
        }
        help += '\n';
    }
    return help;
}

} // namespace korvane::jose
