// The screen that a CRes gives, as text. What it holds is a stranger's: it is read, and never shown as anything but text.

/** The text of the bank's own page. A document that is only parsed loads and runs nothing. */
function textOfHtml(encoded) {
  try {
    const binary = atob(encoded.replaceAll("-", "+").replaceAll("_", "/"));
    const html = new TextDecoder().decode(Uint8Array.from(binary, (character) => character.charCodeAt(0)));
    const page = new DOMParser().parseFromString(html, "text/html");
    for (const element of page.querySelectorAll("script, style")) element.remove();
    for (const element of page.querySelectorAll("input:not([type=hidden]), textarea")) element.append(" [______] ");
    for (const element of page.querySelectorAll("button")) element.prepend(" ["), element.append("] ");
    for (const element of page.querySelectorAll("p, div, h1, h2, h3, li, form, label, button, br")) element.prepend("\n");
    return page.body.textContent.replace(/[ \t]+/g, " ").replace(/\s*\n\s*/g, "\n").trim();
  } catch {
    return "(This is no page: acsHTML is not Base64URL.)";
  }
}

const choices = (mark) => (cres) => [].concat(cres.challengeSelectInfo ?? []).flatMap((choice) =>
  Object.values(Object(choice)).map((name) => `${mark} ${name}`));

/** What stands between the text and the buttons, by the kind of the screen. */
const bodies = {
  "01": ({ challengeInfoLabel = "" }) => [`${challengeInfoLabel} [______]`.trim()],
  "02": choices("( )"),
  "03": choices("[ ]"),
  "04": ({ challengeAddInfo }) => [challengeAddInfo],
  "05": ({ acsHTML = "" }) => [textOfHtml(String(acsHTML))],
};

const buttons = ["submitAuthenticationLabel", "resendInformationLabel", "oobAppLabel", "oobContinueLabel"];

/** Undefined for a message that shows no screen. */
export function screenText(cres) {
  const body = bodies[cres.acsUiType];
  if (!body) return undefined;
  const warning = cres.challengeInfoTextIndicator === "Y" ? "(!) " : "";
  const row = buttons.flatMap((name) => (cres[name] ? [`[${cres[name]}]`] : [])).join(" ");
  const label = cres.acsUiType === "02" || cres.acsUiType === "03" ? cres.challengeInfoLabel : undefined;
  const sections = ["whyInfo", "expandInfo"].flatMap((name) =>
    (cres[`${name}Label`] ? [`> ${cres[`${name}Label`]}: ${cres[`${name}Text`] ?? ""}`] : []));
  const whitelisting = cres.whitelistingInfoText && `${cres.whitelistingInfoText} ( ) yes ( ) no`;
  return [cres.challengeInfoHeader, cres.challengeInfoText && warning + cres.challengeInfoText, label, ...body(cres),
    whitelisting, row, ...sections].filter(Boolean).join("\n");
}
