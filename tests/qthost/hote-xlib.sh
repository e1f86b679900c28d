#!/usr/bin/env bash
# The Xlib host under real keys and clicks (xdotool), on the X server sous-xvfb gives:
# typing reaches the embedded grid's cells and the note, Tab walks host -> grid -> note ->
# host, resizing the host's window resizes the widgets, a screenshot shows them inside it,
# a modal dialog is transient for the host (xprop), blocks its clicks and lets its timer
# run; the host ends with Qt stopped, and without stopping it.
#     hote-xlib.sh HOTE DOSSIER      (the screenshot: DOSSIER/hote-xlib.png)
set -euo pipefail
hote=$1
dossier=$2
travail=$(mktemp -d)
pid=
fin() {
  if [ -n "$pid" ]; then kill "$pid" 2>/dev/null || true; fi
  rm -rf "$travail"
}
trap fin EXIT

echec() {
  echo "hote-xlib.sh: $*" >&2
  echo "-- what the host said:" >&2
  cat "$travail/sortie" "$travail/erreurs" >&2
  exit 1
}
# Waits (10 s at most) until the host said a line matching the pattern.
attend() {
  for _ in $(seq 200); do
    grep -q -- "$1" "$travail/sortie" && return 0
    kill -0 "$pid" 2>/dev/null || break
    sleep 0.05
  done
  echec "no line \"$1\" came"
}
# Waits (10 s at most) until the command prints what is expected.
attend_que() {
  local attendu=$1
  shift
  for _ in $(seq 200); do
    [ "$("$@" 2>/dev/null)" = "$attendu" ] && return 0
    sleep 0.05
  done
  echec "\"$*\" did not give \"$attendu\" but \"$("$@" 2>&1)\""
}
taille() { xwininfo -id "$1" | awk '/Width:/ {l=$2} /Height:/ {h=$2} END {print l "x" h}'; }
dixiemes() { xprop -id "$fenetre" WM_NAME | sed 's/.*hote-xlib \([0-9]*\)"/\1/'; }
couleur() { convert "$1[1x1+$2+$3]" -format '%[hex:p{0,0}]' info:; }
demarre() {
  "$hote" "$@" >"$travail/sortie" 2>"$travail/erreurs" &
  pid=$!
  attend '^pret '
  read -r _ fenetre grille note < <(grep '^pret ' "$travail/sortie")
}
termine() {
  local statut=0
  wait "$pid" || statut=$?
  pid=
  [ "$statut" -eq 0 ] || echec "the host ended with status $statut"
}

demarre
# The pointer off the host's window: keys go to the window with the focus.
xdotool mousemove 1000 740
xdotool windowfocus --sync "$fenetre"
# Its window in front, the host gives the focus to its current control, the grid.
attend_que "$((grille))" xdotool getwindowfocus
xdotool type --delay 50 "0.125"
xdotool key Return
attend '^cellule 0 1 0.125$'
# Enter opened the next cell: Escape closes it, Tab leaves the grid for the note.
xdotool key Escape Tab
attend '^rendu grille suivant$'
attend_que "$((note))" xdotool getwindowfocus
xdotool type --delay 50 "dalle"
xdotool key Tab
attend '^rendu note suivant$'
attend '^focus zone note$'
attend '^focus hote$'
attend_que "$((fenetre))" xdotool getwindowfocus

# The widgets follow the host's areas, which follow its window.
xdotool windowsize "$fenetre" 600 420
attend_que 584x332 taille "$grille"
attend_que 584x32 taille "$note"
sleep 0.3
import -window "$fenetre" "$dossier/hote-xlib.png"
# The host's band, the grid's white cells, the note's white field.
[ "$(couleur "$dossier/hote-xlib.png" 300 4)" = D8D8E8 ] || echec "the host's band is not in the screenshot"
[ "$(couleur "$dossier/hote-xlib.png" 300 300)" = FFFFFF ] || echec "the grid is not in the screenshot"
[ "$(couleur "$dossier/hote-xlib.png" 500 396)" = FFFFFF ] || echec "the note is not in the screenshot"

# A modal dialog over the host's window.
xdotool key F2
dialogue=$(xdotool search --sync --name "Nouvelle barre" | head -n 1)
[ "$(xprop -id "$dialogue" WM_TRANSIENT_FOR | awk '{print $NF}')" = "$fenetre" ] ||
  echec "the dialog is not transient for the host: $(xprop -id "$dialogue" WM_TRANSIENT_FOR)"
attend_que "$dialogue" xdotool getwindowfocus
avant=$(dixiemes)
sleep 0.5
apres=$(dixiemes)
[ "$apres" -gt "$avant" ] || echec "the host's timer stood still under the dialog ($avant, $apres)"
xdotool mousemove --window "$fenetre" 200 20 click 1 mousemove --window "$fenetre" 200 150 click 1
xdotool type --delay 50 "HA9"
xdotool key Return
attend '^modal 1 HA9$'
grep -q '^clic' "$travail/sortie" && echec "a click reached the host's window under the dialog"
attend_que "$((fenetre))" xdotool getwindowfocus
xdotool mousemove --window "$fenetre" 200 20 click 1
attend '^clic$'
xdotool mousemove 1000 740
xdotool key Escape
attend '^fin$'
termine
grep -q '^ligne 0 HA1 0.125$' "$travail/sortie" || echec "the grid lost its cell"
grep -q '^note dalle$' "$travail/sortie" || echec "the note lost its text"

# Ending without stopping Qt: the exit takes Qt, its widgets and the window.
demarre --sans-arret
xdotool windowfocus --sync "$fenetre"
attend_que "$((grille))" xdotool getwindowfocus
xdotool key shift+Tab
attend '^rendu grille precedent$'
attend '^focus hote$'
xdotool key Escape
attend '^fin sans arret$'
termine
echo "hote-xlib.sh: ok ($dossier/hote-xlib.png)"
