#include "tools/demoservice/page/demopage.h"

namespace demo {

const char *const pageText = R"HTML(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<title>Miravel demo service</title>
<style>
body { font: 15px sans-serif; margin: 2em auto; max-width: 70em; padding: 0 1em; color: #1d2633; }
h1 { font-size: 1.4em; } h2 { font-size: 1.1em; margin-top: 2em; }
details { border: 1px solid #d0d2d9; border-radius: 6px; margin: 6px 0; padding: 6px 10px; }
summary { cursor: pointer; }
.accepted { color: #17803d; } .refused { color: #b3261e; font-weight: bold; }
ol { margin: 8px 0; } li { margin: 3px 0; }
.passed::marker { color: #17803d; } .failed { color: #b3261e; } .notreached { color: #9098a8; }
code, pre { background: #f4f5f8; border-radius: 4px; padding: 1px 4px; word-break: break-all;
            white-space: pre-wrap; }
textarea, input, select { width: 100%; font: inherit; box-sizing: border-box; margin: 3px 0; }
textarea { height: 10em; }
button { font: inherit; padding: 4px 16px; }
</style>
</head>
<body>
<h1>The demo question service</h1>
<p>What the assistant asks appears here as it comes. Open a request to see how it was checked; change
an answer below and ask again.</p>
<h2>Requests</h2>
<p><span id="count">none yet</span></p>
<div id="requests"></div>
<h2>Edit an answer</h2>
<p>Until the knowledge file changes or the service ends. Empty lines part paragraphs.</p>
<label>Entry <select id="entry"></select></label>
<label>Question <input id="question"></label>
<label>Answer <textarea id="reply"></textarea></label>
<button id="save">Save</button> <span id="saved" role="status"></span>
<script>
"use strict";
const byId = name => document.getElementById(name);
const shown = 50;
let newest = "";
let entries = [];

function element(name, text, classes) {
  const made = document.createElement(name);
  made.textContent = text;
  made.className = classes || "";
  return made;
}

function questionOf(request) {
  try {
    const body = JSON.parse(request.body);
    return body.rawQuery || body.text || "";
  } catch (error) {
    return "";
  }
}

function asDetails(request) {
  const details = document.createElement("details");
  details.dataset.time = request.time;
  const summary = document.createElement("summary");
  summary.append(element("span", request.verdict, request.verdict),
                 ` ${request.time} ${request.call || request.path} ${questionOf(request)} `,
                 request.verdict === "refused" ? `(${request.reason})` : "",
                 request.fault === "-" ? "" : `(fault ${request.fault})`);
  const steps = document.createElement("ol");
  for (const step of request.steps) {
    const item = element("li", `${step.what}: ${step.outcome}`, step.outcome.replace(" ", ""));
    if (step.shown) {
      item.append(document.createElement("br"), element("code", step.shown));
    }
    steps.append(item);
  }
  const headers = request.headers.map(header => `${header.name}: ${header.value}`).join("\n");
  details.append(summary, steps, element("pre", `${request.method} ${request.path}\n${headers}`),
                 element("pre", request.body));
  return details;
}

async function look() {
  const all = (await (await fetch("/demo/requests")).json()).requests;
  const last = all.length ? all.length + all[all.length - 1].time : "";
  if (last === newest) {
    return;
  }
  newest = last;
  byId("count").textContent = `${all.length}, the newest first`;
  const open = new Set([...document.querySelectorAll("details[open]")].map(one => one.dataset.time));
  byId("requests").replaceChildren(...all.slice(-shown).reverse().map(asDetails));
  for (const details of document.querySelectorAll("details")) {
    details.open = open.has(details.dataset.time);
  }
}

function withoutMarkup(reply) {
  const parsed = new DOMParser().parseFromString(
    reply.replace(/<\/p>/g, "\n\n").replace(/<br\/?>/g, "\n"), "text/html");
  return parsed.body.textContent.trim();
}

function choose() {
  const entry = entries.find(one => String(one.id) === byId("entry").value);
  byId("question").value = entry ? entry.question : "";
  byId("reply").value = entry ? withoutMarkup(entry.reply) : "";
  byId("saved").textContent = "";
}

async function loadEntries() {
  const chosen = byId("entry").value;
  entries = (await (await fetch("/demo/knowledge")).json()).entries;
  byId("entry").replaceChildren(...entries.map(entry => {
    const option = element("option", `${entry.id}: ${entry.question}`);
    option.value = entry.id;
    return option;
  }));
  byId("entry").value = chosen || (entries.length ? entries[0].id : "");
}

async function save() {
  const edited = { id: Number(byId("entry").value), question: byId("question").value,
                   reply: byId("reply").value };
  const answer = await fetch("/demo/knowledge", {
    method: "PUT", headers: { "Content-Type": "application/json" }, body: JSON.stringify(edited) });
  const said = await answer.json();
  await loadEntries();
  byId("saved").textContent = said.error || "Saved. Ask again.";
}

byId("entry").addEventListener("change", choose);
byId("save").addEventListener("click", save);
loadEntries().then(choose);
look();
setInterval(() => look().catch(() => { byId("count").textContent = "the service has ended"; }), 1000);
</script>
</body>
</html>
)HTML";

} // namespace demo
