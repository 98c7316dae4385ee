// What one line of the log means to a person.

/** The identifier of its transaction, or undefined. */
export const transactionOf = ({ transaction, path = "" }) => transaction ?? path.match(/^\/challenge\/(.+)$/)?.[1];

const arrows = { received: "\u2190", sent: "\u2192", withheld: "\u2192", connectionClosed: "\u2192" };
const words = {
  withheld: "kept back",
  connectionClosed: "connection closed",
  held: "CRes waits for you",
  abandoned: "the app has gone",
};
const endings = { Y: "ended well (Y)", N: "failed (N)" };

function nameOf({ event, path, message, bytes }) {
  if (event === "held" || event === "abandoned") return words[event];
  if (path === "/authenticate" && message?.messageType !== "Erro") return event === "received" ? "authentication" : "authenticated";
  if (!message) return bytes === undefined ? "a body" : `no message, ${bytes} bytes`;
  return String(message.messageType ?? "no message type");
}

function whatItSays({ event, message = {}, edited }) {
  const counter = message.acsCounterAtoS ?? message.sdkCounterStoA;
  return [counter, message.transStatus && `transStatus ${message.transStatus}`, edited && "edited",
    (event === "withheld" || event === "connectionClosed") && words[event]].filter(Boolean);
}

/** A fault that was played, an error that was found, or a body that is no message. */
function faultOf({ event, fault, message, bytes, status, text }) {
  if (fault) return `fault: ${fault}`;
  if (message?.messageType === "Erro")
    return [message.errorCode, message.errorDescription, message.errorDetail].filter(Boolean).join(" \u00b7 ");
  if (event === "received" && bytes !== undefined) return "not to be read";
  return status >= 400 || (event === "sent" && text !== undefined) ? "no message" : undefined;
}

export const isAtFault = (event) => faultOf(event) !== undefined;

/** @return the title of a line, and what is at fault with it, if anything. */
export function describe(event) {
  return { title: [arrows[event.event] ?? "\u00b7", nameOf(event), ...whatItSays(event)].join(" "), fault: faultOf(event) };
}

/** What a transaction has come to. */
export function outcomeOf(events) {
  const wrong = events.findLast(isAtFault);
  const { messageType, errorCode, errorDetail } = wrong?.message ?? {};
  if (messageType === "Erro") return { text: `Erro ${errorCode}: ${errorDetail}`, isAtFault: true };
  if (wrong) return { text: faultOf(wrong), isAtFault: true };
  const status = events.findLast((event) => event.event !== "received" && event.message?.transStatus)?.message.transStatus;
  return { text: status ? endings[status] ?? `ended with ${status}` : describe(events.at(-1)).title, isAtFault: false };
}
