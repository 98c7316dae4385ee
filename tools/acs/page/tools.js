// What the parts of the page share.

export const find = (id) => document.getElementById(id);

/** An element with attributes and content; texts stay texts. */
export function element(name, attributes, ...content) {
  const made = document.createElement(name);
  for (const [key, value] of Object.entries(attributes)) made.setAttribute(key, value);
  made.append(...content.filter((part) => part !== undefined));
  return made;
}

const token = document.querySelector("meta[name=token]").content;

/** Asks the tool; a body makes it a POST. Rejects with a text for people. */
export async function ask(path, body) {
  const answer = await fetch(`/control/${path}`,
    { method: body === undefined ? "GET" : "POST", headers: { "Korvane-Token": token }, body })
    .catch(() => { throw new Error("korvane-acs does not answer; it may have ended."); });
  if (answer.ok) return answer;
  const { error } = await answer.json().catch(() => ({}));
  throw new Error(error ?? `korvane-acs answers with status ${answer.status}.`);
}
