// The page: asks for what is new, shows it, and takes decisions back. Everything that it shows goes in as text.

import { makeChoices } from "./choices.js";
import { describe, isAtFault, outcomeOf, transactionOf } from "./events.js";
import { screenText } from "./screen.js";
import { ask, element, find } from "./tools.js";

const kPause = 400;
const kNoTransaction = "without a transaction";
const kMostTransactions = 200;

/** Transactions by their identifier, in the order that they came: {id, events, scenario, row}. */
const transactions = new Map();
let chosen;
let isFollowing = true; // the newest transaction, until a person chooses one

function add(event) {
  if (event.event === "listening") return;
  const id = transactionOf(event) ?? kNoTransaction;
  if (!transactions.has(id)) {
    transactions.set(id, { id, events: [] });
    if (transactions.size > kMostTransactions) transactions.delete(transactions.keys().next().value);
    if (isFollowing) chosen = id;
  }
  const transaction = transactions.get(id);
  transaction.events.push(event);
  transaction.scenario ??= event.scenario;
}

/** The tool has forgotten what is older. */
function forgetBefore(number) {
  for (const [id, transaction] of transactions) {
    transaction.events = transaction.events.filter((event) => event.number >= number);
    if (transaction.events.length === 0) transactions.delete(id);
  }
}

function rowOfTransaction({ id, events, scenario }) {
  const button = element("button", { type: "button", title: `${id}\n${scenario ?? ""}` },
    element("span", { class: "time" }, events[0].time.slice(11, 19)),
    element("span", {}, scenario?.split("/").at(-1) ?? id), element("span", { class: "outcome" }));
  button.addEventListener("click", () => {
    isFollowing = false;
    chosen = id;
    show();
  });
  return element("li", { "data-id": id }, button);
}

/** The newest stands first. Rows stay, and with them the focus of a keyboard. */
function showTransactions() {
  const list = find("transactions");
  for (const row of [...list.children]) if (!transactions.has(row.dataset.id)) row.remove();
  for (const [id, transaction] of transactions) {
    if (!transaction.row) list.prepend(transaction.row = rowOfTransaction(transaction));
    transaction.row.firstChild.setAttribute("aria-current", String(id === chosen));
    const outcome = outcomeOf(transaction.events);
    const place = transaction.row.querySelector(".outcome");
    place.textContent = outcome.text;
    place.classList.toggle("fault", outcome.isAtFault);
  }
  find("none").hidden = transactions.size > 0;
}

/** What a message holds, once somebody looks. */
function bodyOf(event) {
  const screen = event.message && screenText(event.message);
  const text = event.message ? JSON.stringify(event.message, null, 2) : event.text ?? event.body;
  return [screen && element("pre", { class: "screen" }, screen), text !== undefined && element("pre", {}, text)];
}

function rowOf(event) {
  const { title, fault } = describe(event);
  const details = element("details", { "data-number": String(event.number) }, element("summary", {},
    element("span", { class: "time" }, `${event.time.slice(11, 23)} `), title,
    element("span", { class: "fault" }, fault && ` ${fault}`)));
  details.addEventListener("toggle", () => details.append(...bodyOf(event).filter(Boolean)), { once: true });
  return element("li", {}, details);
}

function showMessages() {
  const list = find("messages");
  const events = transactions.get(chosen)?.events ?? [];
  const isOther = list.dataset.of !== chosen;
  if (isOther) list.replaceChildren();
  list.dataset.of = chosen;
  // Rows that stand stay, so that what is open stays open; the oldest may be gone.
  while (list.firstChild && Number(list.firstChild.firstChild.dataset.number) < events[0]?.number) list.firstChild.remove();
  for (const event of events.slice(list.childElementCount)) {
    const row = rowOf(event);
    list.append(row);
    if (isAtFault(event) || event.message?.messageType === "CRes") row.firstChild.open = true;
  }
}

function heldBox({ number, transaction, text }) {
  const area = element("textarea", { rows: "14", spellcheck: "false" });
  try { area.value = JSON.stringify(JSON.parse(text), null, 2); } catch { area.value = text; }
  const error = element("p", { class: "fault", role: "alert" });
  const send = async (body) => {
    error.textContent = await ask(`held/${number}`, body).then(() => "", (reason) => reason.message);
  };
  const edited = element("button", { type: "button", class: "edited" }, "Send what stands here");
  edited.addEventListener("click", () => send(area.value));
  const unchanged = element("button", { type: "button", class: "unchanged" }, "Send it as it was");
  unchanged.addEventListener("click", () => send(text));
  return element("div", { class: "held", "data-number": String(number) },
    element("label", {}, `A CRes of ${transaction}`, area), edited, " ", unchanged, error);
}

/** Boxes that stand stay, with what is typed in them. */
function showHeld(held) {
  const numbers = new Set(held.map(({ number }) => String(number)));
  const standing = new Map([...find("held").children].map((box) => [box.dataset.number, box]));
  for (const [number, box] of standing) if (!numbers.has(number)) box.remove();
  find("waiting").hidden = held.length === 0;
  for (const answer of held) if (!standing.has(String(answer.number))) find("held").append(heldBox(answer));
}

function show() {
  if (!transactions.has(chosen)) chosen = [...transactions.keys()].at(-1);
  showTransactions();
  showMessages();
}

let position = 0;

/** Takes over what has come. @return whether more is waiting. */
async function update() {
  const { oldest, upTo, desk, events } = await (await ask(`events/${position}`)).json();
  events.forEach((event, index) => add(Object.assign(event, { number: upTo - events.length + index })));
  const isNew = upTo !== position;
  position = upTo;
  find("status").textContent = "Listening";
  find("next").textContent = `Next: ${desk.next ?? "as usual"}`;
  find("hold").checked = desk.holding;
  find("holding").textContent = desk.holding ? "They wait for you here." : "They go at once.";
  showHeld(desk.held);
  if (!isNew) return false;
  forgetBefore(oldest);
  show();
  return true;
}

async function run() {
  try {
    while (await update());
  } catch (reason) {
    complain(reason);
  }
  setTimeout(run, kPause);
}

async function download() {
  const url = URL.createObjectURL(await (await ask("log")).blob());
  element("a", { href: url, download: "korvane-acs.jsonl" }).click();
  setTimeout(() => URL.revokeObjectURL(url), 60000);
}

const complain = (reason) => { find("status").textContent = reason.message; };
find("hold").addEventListener("change", ({ target }) => ask("hold", String(target.checked)).catch(complain));
find("download").addEventListener("click", () => download().catch(complain));
makeChoices();
run();
