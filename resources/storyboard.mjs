// Writes the storyboard of the challenge screens: eight scenes that share nearly everything, and one for pages.
// usage: node storyboard.mjs            writes KorvaneResources.bundle/ChallengeStoryboard.json beside this file
//        node storyboard.mjs --check    fails if that file is not what this one writes

import { readFileSync, writeFileSync } from "node:fs";
import { fileURLToPath } from "node:url";

/** What differs between screens that stand and screens that lie. Lengths are in points. */
const metrics = {
  portrait: { margin: 25, logo: 44, gap: 16, small: 8, control: 48, header: 22, text: 16 },
  // Wider than what notches cover, so that texts have the same width with and without one.
  landscape: { margin: 60, logo: 32, gap: 12, small: 6, control: 44, header: 20, text: 16 },
};

const bar = 44;
/** Lines of no more than this are read with ease. */
const widest = 560;
/** How far the screens themselves set the title of a section's button in. */
const titleInset = 25;
const regular = (size) => ({ size });
const medium = (size) => ({ size, weight: 0.23 });
const semibold = (size) => ({ size, weight: 0.3 });

/** A view with its outlet and its constraints of its superview. */
const control = (id, type, properties, ...constraints) => ({
  view: { class: type, id, outlet: id, ...properties },
  constraints,
});
const named = (constraint, outlet) => ({ constraint, outlet });

const filled = {
  font: semibold(17), titleColor: "challenge_on_accent", backgroundColor: "challenge_accent", cornerRadius: 10,
};
const plain = { font: medium(16), titleColor: "challenge_accent", cornerRadius: 10 };

function across(id, { margin }) {
  return [`${id}.leading = readable.leading + ${margin}`, `${id}.trailing = readable.trailing - ${margin}`];
}

function cancelBar(top, left, right) {
  return control("toolBar", "UINavigationBar", {
    barTintColor: "challenge_bar", translucent: false,
    items: [{ title: "Confirm payment",
      right: { class: "ChallengeButton", title: "Cancel", font: regular(17), titleColor: "challenge_accent",
        contentEdgeInsets: [7, 8, 7, 8], cornerRadius: 8 } }],
  }, top, `toolBar.leading = ${left}`, `toolBar.trailing = ${right}`, `toolBar.height = ${bar}`);
}

/** Logos, header, warning, challenge text and label. */
function head(m) {
  const logo = { contentMode: "scaleAspectFit", clipsToBounds: true, cornerRadius: 6 };
  const top = `safeArea.top + ${bar + m.gap}`;
  // The text view has an inset of 5 points of its own at both sides.
  const inset = 5;
  return [
    control("bankLogo", "UIImageView", { ...logo, accessibilityLabel: "Bank" },
      `bankLogo.top = ${top}`, `bankLogo.leading = readable.leading + ${m.margin}`,
      named("bankLogo.width = 120", "bankLogoWidthConstraint"),
      named(`bankLogo.height = ${m.logo}`, "bankLogoHeightConstraint")),
    control("psLogo", "UIImageView", { ...logo, accessibilityLabel: "Card scheme" },
      `psLogo.top = ${top}`, `psLogo.trailing = readable.trailing - ${m.margin}`,
      named("psLogo.width = 90", "psLogoWidthConstraint"), `psLogo.height = ${m.logo}`),
    control("challengeInfoHeader", "UILabel",
      { font: semibold(m.header), textColor: "challenge_text", numberOfLines: 0, accessibilityRole: "header" },
      named(`challengeInfoHeader.top = bankLogo.bottom + ${m.gap}`, "headerTopConstraint"),
      ...across("challengeInfoHeader", m)),
    control("warningImage", "UIImageView",
      { image: "Warning", contentMode: "scaleAspectFit", clipsToBounds: true, accessibilityLabel: "Warning" },
      `warningImage.top = challengeInfoHeader.bottom + ${m.small}`,
      `warningImage.leading = readable.leading + ${m.margin - inset}`,
      named("warningImage.width = 0", "warningWidthConstraint"), "warningImage.height = 32"),
    control("challengeInfoText", "UITextView", { font: regular(m.text), textColor: "challenge_text" },
      `challengeInfoText.top = challengeInfoHeader.bottom + ${m.small - 4}`,
      "challengeInfoText.leading = warningImage.trailing",
      `challengeInfoText.trailing = readable.trailing - ${m.margin - inset}`,
      named("challengeInfoText.height = 0", "challengeInfoHeightConstraint")),
    control("challengeInfoLabel", "UILabel",
      { font: medium(15), textColor: "challenge_secondary_text", numberOfLines: 0, collapses: true },
      `challengeInfoLabel.top = challengeInfoText.bottom`, ...across("challengeInfoLabel", m)),
  ];
}

function section(name, above, m) {
  const button = `${name}Button`;
  return [
    control(button, "ShowInfoButtonButton",
      { image: "ArrowDown", contentHorizontalAlignment: "left", font: medium(16), titleColor: "challenge_accent",
        // The room of the arrow, which stands at the right end.
        contentEdgeInsets: [0, 0, 0, 20], collapses: true, tintColor: "challenge_accent" },
      `${button}.top = ${above}.bottom + ${m.small}`, `${button}.leading = readable.leading + ${m.margin - titleInset}`,
      `${button}.trailing = readable.trailing - ${m.margin}`, `${button}.height = 44`),
    control(name, "UITextView", { font: regular(15), textColor: "challenge_secondary_text" },
      `${name}.top = ${button}.bottom`, ...across(name, m),
      named(`${name}.height = 0`, `${name}HeightConstraint`)),
  ];
}

/** The question of whitelisting and the two sections. */
function foot(above, m) {
  return [
    control("whitelistingInfo", "ChallengeSelectButton",
      { image: "UncheckedSquareCheckbox", contentHorizontalAlignment: "left", font: regular(15), numberOfLines: 0,
        titleColor: "challenge_text", titleEdgeInsets: [0, 10, 0, 0], clipsToBounds: true,
        accessibilityRole: "checkBox", collapses: true },
      `whitelistingInfo.top = ${above}.bottom + ${m.gap}`, ...across("whitelistingInfo", m),
      named("whitelistingInfo.height = 44", "whitelistingInfoHeightConstraint")),
    ...section("whyInfo", "whitelistingInfo", m),
    ...section("extInfo", "whyInfo", m),
  ];
}

function button(id, above, look, title, gap, m) {
  return control(id, "ChallengeButton", { title, collapses: true, ...look },
    `${id}.top = ${above}.bottom + ${gap}`, ...across(id, m), `${id}.height = ${m.control}`);
}

function optionList(cell, role, m) {
  return control("tableView", "UITableView", {
    backgroundColor: "clear", scrollEnabled: false,
    cells: { [cell]: { class: "ChallengeTableViewCell", subviews: [
      { class: "ChallengeSelectButton", id: "option", tag: 1000, image: "UncheckedCheckbox", font: regular(15),
        numberOfLines: 4, titleColor: "challenge_text", titleEdgeInsets: [0, 12, 0, 0], contentHorizontalAlignment: "left",
        accessibilityRole: role }],
      constraints: ["option.top = self.top", "option.bottom = self.bottom", "option.leading = self.leading",
        "option.trailing = self.trailing"] } },
  }, `tableView.top = challengeInfoLabel.bottom + ${m.small}`, ...across("tableView", m),
  named("tableView.height = 0", "selectorHeihgtConstraint"));
}

/** What each kind has between the challenge label and the question of whitelisting. */
const middles = {
  Text: (m) => [
    control("otp", "UITextField",
      { font: regular(20), textColor: "challenge_text", textAlignment: "center", backgroundColor: "challenge_field",
        borderColor: "challenge_border", textInset: 12, accessibilityLabel: "Code" },
      `otp.top = challengeInfoLabel.bottom + ${m.small}`, ...across("otp", m), `otp.height = ${m.control}`),
    button("submitButton", "otp", filled, "Submit", m.gap, m),
    button("resendButton", "submitButton", plain, "Send a new code", m.small, m),
  ],
  SingleSelect: (m) => [
    optionList("SingleSelectCell", "radioButton", m),
    button("nextButton", "tableView", filled, "Next", m.gap, m),
  ],
  MultiSelect: (m) => [
    optionList("MultiSelectCell", "checkBox", m),
    button("nextButton", "tableView", filled, "Next", m.gap, m),
  ],
  Oob: (m) => [button("continueButton", "challengeInfoLabel", filled, "Continue", m.gap, m)],
};

function holding(type, controls, properties) {
  return {
    class: type, outlet: "screen", backgroundColor: "challenge_background", tintColor: "challenge_accent", ...properties,
    subviews: controls.map((each) => each.view),
    constraints: controls.flatMap((each) => each.constraints),
  };
}

function nativeScene(kind, orientation) {
  const m = metrics[orientation];
  const middle = middles[kind](m);
  const [left, right] = ["safeArea.leading", "safeArea.trailing"];
  return {
    class: `${orientation === "landscape" ? "Landscape" : ""}Challenge${kind}NativeViewController`, orientation,
    view: holding("UIScrollView", [...head(m), ...middle, ...foot(middle.at(-1).view.id, m),
      cancelBar(named("toolBar.top = safeArea.top", "toolBarTopConstraint"), left, right)],
    { readableWidth: widest + 2 * m.margin }),
  };
}

function htmlScene() {
  return {
    class: "ChallengeWebViewController",
    view: holding("UIView", [
      control("challengeWebView", "WKWebView", {}, "challengeWebView.top = toolBar.bottom",
        "challengeWebView.bottom = self.bottom", "challengeWebView.leading = safeArea.leading",
        "challengeWebView.trailing = safeArea.trailing"),
      cancelBar("toolBar.top = safeArea.top", "safeArea.leading", "safeArea.trailing")]),
  };
}

function storyboard() {
  const scenes = {};
  for (const kind of Object.keys(middles)) {
    scenes[`native${kind}ChallengeVc`] = nativeScene(kind, "portrait");
    scenes[`native${kind}ChallengeLandscapeVc`] = nativeScene(kind, "landscape");
  }
  return { scenes: { ...scenes, htmlChallengeVc: htmlScene() } };
}

/** JSON with one line for every view and every list that is not too long for one. */
function written(value, indent = "") {
  const line = JSON.stringify(value, null, 1).replace(/\n */g, " ");
  if (indent.length + line.length <= 240 || typeof value !== "object") return line;
  const inner = indent + "  ";
  const parts = Array.isArray(value)
    ? value.map((each) => inner + written(each, inner))
    : Object.entries(value).map(([name, each]) => `${inner}${JSON.stringify(name)}: ${written(each, inner)}`);
  const [open, close] = Array.isArray(value) ? "[]" : "{}";
  return `${open}\n${parts.join(",\n")}\n${indent}${close}`;
}

const file = fileURLToPath(new URL("KorvaneResources.bundle/ChallengeStoryboard.json", import.meta.url));
const text = written(storyboard()) + "\n";
if (process.argv[2] !== "--check") writeFileSync(file, text);
else if (readFileSync(file, "utf8") !== text) {
  console.error("ChallengeStoryboard.json is out of date: run storyboard.mjs");
  process.exit(1);
}
