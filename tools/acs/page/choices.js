// What the next transaction plays: a scenario, with a fault, or whatever a person makes of it.

import { ask, element, find } from "./tools.js";

/** What a fault begins with where it must be told; a person changes it in the text. */
const suggestions = { member: "challengeInfoText", value: 0, seconds: 3 };

/** Puts a fault where its kind strikes first, in place of those that are there. */
function withFault(text, fault) {
  const scenario = JSON.parse(text);
  const places = [...(scenario.steps ?? []), ...["authentication", "success", "failure"].flatMap((name) => scenario[name] ?? [])];
  for (const place of places) delete place.fault;
  const values = fault.required.map((name) => [name, suggestions[name]]);
  const made = { name: fault.name, ...Object.fromEntries(values) };
  if (fault.place === "authentication") scenario.authentication = { fault: made };
  else (scenario.steps[0] ?? (scenario.success ??= {})).fault = made;
  return JSON.stringify(scenario, null, 2);
}

/** Fills the lists and connects them. */
export async function makeChoices() {
  const say = (reason) => { find("wrong").textContent = reason?.message ?? ""; };
  const answer = await ask("choices").catch(say);
  if (!answer) return;
  const { scenarios, faults } = await answer.json();
  const options = scenarios.map(({ name }, index) =>
    element("option", { value: String(index) }, index === 0 ? `as usual (${name.split("/").at(-1)})` : name));
  find("scenario").append(...options);
  find("fault").append(element("option", { value: "" }, "none, or the scenario's own"),
    ...faults.map(({ name, effect }) => element("option", { value: name }, `${name}: ${effect}`)));

  const scenario = () => scenarios[find("scenario").value];
  const fault = () => faults.find(({ name }) => name === find("fault").value);
  let made;
  const choose = () => {
    find("description").textContent = scenario().description;
    find("text").value = fault() ? withFault(scenario().text, fault()) : scenario().text;
    made = find("text").value; // a text area has its own line ends
    say();
  };
  for (const id of ["scenario", "fault"]) find(id).addEventListener("change", choose);
  choose();

  /** What it is called in the list of transactions. */
  const name = () => [scenario().name.split("/").at(-1), fault() && ` with ${fault().name}`,
    find("text").value !== made && ", changed"].filter(Boolean).join("");
  const lay = (path, body) => ask(`next/${path}`, body).then(() => say(), say);
  find("play").addEventListener("click", () => lay(encodeURIComponent(name()), find("text").value));
  find("forget").addEventListener("click", () => lay("", ""));
}
