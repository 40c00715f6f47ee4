#!/usr/bin/env python3
"""Writes the expected report text of each settings JSON named in CASES,
straight from the report's wording, without the program's code: header line,
section titles, "label<TAB>value" lines, sentences, and tables as
tab-separated rows (a heading over n cells is followed by n-1 empty cells).
A key missing from a JSON file has the start-up value of the field.

    python3 tests/data/report/make_golden.py
"""
import json
import os

HERE = os.path.dirname(os.path.abspath(__file__))
DATA = os.path.dirname(HERE)
# golden text -> settings JSON, relative to tests/data: every golden settings
# file of manifest.json as it decodes, and a JSON with every row filled
with open(os.path.join(DATA, "manifest.json"), encoding="utf-8") as f:
    CASES = {case["name"] + ".txt": case["name"] + ".json" for case in json.load(f)}
CASES["all_rows.txt"] = "report/all_rows.json"
START = {"eePSOnH": "1", "eePSOnM": "0", "eePSOffH": "1", "eePSOffM": "0", "tabDobaPlatnostiSMS": "3"}


def report(s):
    def get(key, row=None):
        value = s.get(key, [""] * 8 if row is not None else START.get(key, ""))
        return value[row] if row is not None else value

    def bit(key, row=None):
        return "1" if get(key, row) else "0"

    def pick(key, yes, no):
        return yes if get(key) else no

    out = ["Nastavení stanice: " + get("tabJmenoStanice"), "Všeobecné"]
    out += ["Název stanice\t" + get("tabJmenoStanice"), "PIN\t" + get("tabPIN"),
            "Tel. servisního centra\t" + get("tabTCcentra")]
    if get("opEnablePS1"):
        out.append("Šetřící režim povolen. Modem je vypnut po dobu %s:%s a zapnut po dobu %s:%s." %
                   (get("eePSOffH"), get("eePSOffM"), get("eePSOnH"), get("eePSOnM")))
    else:
        out.append("Šetřící režim nepovolen.")
    out.append(pick("opPSOutOff", "Při vypnutém modemu vypínat i výstupy.", "Při vypnutém modemu nevypínat výstupy."))
    out.append("SMS zprávy")
    out.append("Doba platnosti SMS zpráv je " + get("tabDobaPlatnostiSMS") + " dnů.")
    out.append("Při poklesu napětí baterií " + pick("opBatt", "vypínat", "nevypínat") +
               " zařízení a odesílat text: '" + get("rtBattLow") + "'")
    out.append("V příkazové zprávě " + pick("opPINAuth", "požadovat", "nepožadovat") + " autorizaci zadáním PINu.")
    out.append("Hlášení o stavu " + pick("tabOdpovidatT0", "posílat", "neposílat") + " i na telefonní číslo T1.")
    out.append("Hlášení o nepovoleném přístupu " + pick("tabPrepnoutNepovolPristup", "posílat", "neposílat") +
               " i na telefonní číslo T1.")
    out.append(pick("opSwitchReport", "Posílat", "Neposílat") + " hlášení o zap./vyp. zařízení. Text zap.: '" +
               get("rtSwitchOn") + "' Text vyp.: '" + get("rtSwitchOff") + "'")
    out.append(pick("opPowerReport", "Posílat", "Neposílat") + " hlášení o zap./vyp. síťového napájení. Text zap.: '" +
               get("rtPowerUp") + "' Text vyp.: '" + get("rtPowerDown") + "'")
    out += ["Logické vstupy", "\t".join(["Název", "", "Stav 0", "Stav 1", "0->1", "", "", "1->0", "", "", "Negace",
                                         "Uvádět ve zprávě"])]
    for r in range(8):
        out.append("\t".join(["IN%d" % (r + 1), get("tabINPNazev", r), get("tabINPVyp", r), get("tabINPZap", r),
                              bit("tabINPLHEvent", r), get("tabINPLH", r), bit("eeMaskDInLHAlarm", r),
                              bit("tabINPHLEvent", r), get("tabINPHL", r), bit("eeMaskDInHLAlarm", r),
                              bit("tabINPNeg", r), bit("tabINPZpr", r)]))
    out += ["Logické výstupy", "\t".join(["Název", "", "Stav 0", "Stav 1", "Negace", "Impuls", "",
                                          "Uvádět ve zprávě"])]
    for r in range(8):
        out.append("\t".join(["OUT%d" % (r + 1), get("tabOUTNazev", r), get("tabOUTVyp", r), get("tabOUTZap", r),
                              bit("tabOUTNeg", r), get("tabOUTimpuls", r), get("tabOUTimpulsLEN", r),
                              bit("tabOUTZpr", r)]))
    out += ["Telefonní čísla", "\t".join(["Telefonní číslo", "", "Příjem příkazů", "Odesílání zpráv"])]
    for r in range(8):
        out.append("\t".join(["T%d" % (r + 1), get("tabTC", r), bit("tabTCPrijem", r), bit("tabTCUdalost", r)]))
    return "\n".join(out) + "\n"


for golden, source in CASES.items():
    with open(os.path.join(DATA, source), encoding="utf-8") as f:
        settings = json.load(f)
    with open(os.path.join(HERE, golden), "w", encoding="utf-8", newline="\n") as f:
        f.write(report(settings))
