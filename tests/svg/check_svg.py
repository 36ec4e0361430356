"""Checks of the SVG backend's and the demo's output that need an XML parser
or a process: well-formed documents with their parts, the contact sheet's
seven views, and every error path of kesra-demo's command line.

usage: check_svg.py scene WRITER DIR | demo DEMO DIR | cli DEMO DIR
"""
import os
import subprocess
import sys
import xml.etree.ElementTree as ET

SVG = "{http://www.w3.org/2000/svg}"
FRAME_PARTS = {"background", "tubes", "legend", "ruler", "axis", "tips", "title"}


def classes(root):
    return [g.get("class") for g in root.iter(SVG + "g")]


def parse(path):
    root = ET.parse(path).getroot()  # raises on a document that is not well-formed
    assert root.tag == SVG + "svg", root.tag
    return root


def check_scene(writer, directory):
    path = os.path.join(directory, "small-scene.svg")
    subprocess.run([writer, path], check=True)
    root = parse(path)
    missing = (FRAME_PARTS | {"dragged-area"}) - set(classes(root))
    assert not missing, missing
    texts = "".join(root.itertext())
    assert 'Two tubes <&> "crossing"' in texts, texts
    assert root.find(f".//{SVG}g[@class='tubes']/{SVG}polygon") is not None


def check_demo(demo, directory):
    frame = os.path.join(directory, "frame.svg")
    sheet = os.path.join(directory, "sheet.svg")
    result = subprocess.run([demo, "--out", frame, "--sheet", sheet, "--size", "900x500"],
                            check=True, capture_output=True, text=True)
    for word in ("streamlines", "nodes", "ring vertices", "speed range", "ruler", "view",
                 "time taken", frame, sheet):
        assert word in result.stdout, (word, result.stdout)
    root = parse(frame)
    missing = (FRAME_PARTS | {"curve"}) - set(classes(root))
    assert not missing, missing
    assert root.get("width") == "900" and root.get("height") == "500"
    root = parse(sheet)
    views = [g for g in root.iter(SVG + "g") if g.get("class") == "view"]
    assert len(views) == 7, len(views)
    for view in views:
        assert view.find(f".//{SVG}g[@class='tubes']") is not None
    # The colour key, once, beside the views.
    keys = [g for g in root.iter(SVG + "g") if g.get("class") == "key"]
    assert len(keys) == 1 and classes(keys[0]).count("legend") == 1, classes(root)
    check_legend_strip(root)


def check_legend_strip(root):
    """Below the views, the legend once in each option, under its caption."""
    strips = [g for g in root.iter(SVG + "g") if g.get("class") == "strip"]
    captions = [next(strip.iter(SVG + "text")).text for strip in strips]
    assert captions == ["viridis", "cividis", "cool to warm", "turbo", "log scale",
                        "log scale, 8 bands", "NaN, below, above", "fixed, 3 decimals",
                        "scientific", "automatic", "in thousandths"], captions
    for strip in strips:
        assert classes(strip).count("legend") == 1, classes(strip)
    keys = {caption: strip for caption, strip in zip(captions, strips)}
    # A published palette keeps each of its 256 stops in the gradient.
    stops = [stop for stop in keys["viridis"].iter(SVG + "stop") if stop.get("data-value")]
    assert len(stops) == 256 and stops[0].get("stop-color") == "#440154", len(stops)
    kinds = [rect.get("data-kind") for rect in keys["NaN, below, above"].iter(SVG + "rect")
             if rect.get("data-kind")]
    assert kinds == ["below", "above", "nan"], kinds
    for caption in ("log scale", "log scale, 8 bands"):
        kinds = [r.get("data-kind") for r in keys[caption].iter(SVG + "rect") if r.get("data-kind")]
        assert kinds == ["nan"], (caption, kinds)
    texts = lambda caption: ["".join(t.itertext()) for t in keys[caption].iter(SVG + "text")]
    assert "100" in texts("log scale"), texts("log scale")  # 10 with the 0 raised
    assert "1.478" in texts("fixed, 3 decimals"), texts("fixed, 3 decimals")
    assert "1.5e+00" in texts("scientific"), texts("scientific")
    assert "1478" in texts("in thousandths"), texts("in thousandths")
    assert "Speed (x10^-3)" in texts("in thousandths"), texts("in thousandths")


def check_cli(demo, directory):
    os.makedirs(directory, exist_ok=True)
    out = os.path.join(directory, "out.svg")

    def run(*args, code, left=()):
        result = subprocess.run([demo, *args], capture_output=True, text=True, cwd=directory)
        assert result.returncode == code, (args, result.returncode, result.stderr)
        assert sorted(os.listdir(directory)) == sorted(left), (args, os.listdir(directory))
        return result

    views = "one of iso, front, back, left, right, top, bottom"
    bad = [(["--frobnicate"], "--frobnicate"), (["stray"], "stray"), (["--out"], "--out"),
           (["--out", ""], "--out"), (["--size", "12x"], "--size"), (["--size", "399x800"], "--size"),
           (["--size", "1200x9000"], "--size"), (["--view", "diagonal"], "--view " + views),
           (["--view"], "--view " + views), (["--palette", "rainbow"], "--palette"),
           (["--banded", "1"], "--banded"), (["--banded", "31"], "--banded"),
           (["--banded=-2"], "--banded"), (["--banded", "9" * 30], "--banded"),
           (["--help=no"], "--help"), (["--out", out, "--sheet", "./out.svg"], "--sheet")]
    for args, named in bad:
        err = run(*args, code=2).stderr
        first, rest = err.split("\n", 1)
        assert all(word in first for word in named.split(" ", 1)), (args, err)
        assert "usage: kesra-demo" in rest, (args, err)
    missing_dir = os.path.join(directory, "no-such-dir", "x.svg")
    for args, path in [(["--out", missing_dir], missing_dir), (["--out", directory], directory),
                       (["--out", out, "--sheet", missing_dir], missing_dir)]:
        err = run(*args, code=1).stderr
        assert path in err and err.count("\n") == 1, (args, err)
    # A sheet that is a directory: the frame is not left in place either.
    os.mkdir(os.path.join(directory, "d"))
    assert "'d'" in run("--out", "out.svg", "--sheet", "d", code=1, left=["d"]).stderr
    os.rmdir(os.path.join(directory, "d"))
    # Temporary names clash with no output and no file already there.
    with open(os.path.join(directory, "a.svg.partial"), "w") as mine:
        mine.write("mine")
    run("--out", "a.svg", "--sheet", "a.svg.partial", "--banded", "0000000002", code=0,
        left=["a.svg", "a.svg.partial"])
    assert parse(os.path.join(directory, "a.svg.partial")).get("width") != "1200"
    for name in os.listdir(directory):
        os.remove(os.path.join(directory, name))
    assert run("--help", code=0).stdout.startswith("usage: kesra-demo")


def main():
    mode, program, directory = sys.argv[1:4]
    os.makedirs(directory, exist_ok=True)
    for name in os.listdir(directory):
        os.remove(os.path.join(directory, name))
    {"scene": check_scene, "demo": check_demo, "cli": check_cli}[mode](program, directory)


if __name__ == "__main__":
    main()
