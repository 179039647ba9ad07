<?xml version="1.0" encoding="UTF-8"?>
<profile id="wlan-6g" showInChannelList="1">
  <label lang="en">WLAN 6 GHz (Europe)</label>
  <label lang="de">WLAN 6 GHz (Europa)</label>
  <description lang="en">Channels of 20, 40, 80 and 160 MHz; the centre of channel n is 5950 MHz + n * 5 MHz. Source: IEEE 802.11; ECC/DEC/(20)01.</description>
  <description lang="de">Kanäle zu 20, 40, 80 und 160 MHz; die Mitte von Kanal n ist 5950 MHz + n * 5 MHz. Quelle: IEEE 802.11; ECC/DEC/(20)01.</description>
  <begin>5945 MHz</begin>
  <end>6425 MHz</end>
  <channels>
    <!-- The same 480 MHz, divided in four ways. -->
    <range label="20 MHz" type="provider" selectable="1">
      <begin>5945 MHz</begin>
      <end>6425 MHz</end>
      <color>#3c8d40</color>
      <channels start="5945 MHz" width="20 MHz" first="1" count="24" step="4"/>
    </range>
    <range label="40 MHz" type="provider" selectable="1">
      <begin>5945 MHz</begin>
      <end>6425 MHz</end>
      <color>#3f7fbf</color>
      <channels start="5945 MHz" width="40 MHz" first="3" count="12" step="8"/>
    </range>
    <range label="80 MHz" type="provider" selectable="1">
      <begin>5945 MHz</begin>
      <end>6425 MHz</end>
      <color>#7a5fb0</color>
      <channels start="5945 MHz" width="80 MHz" first="7" count="6" step="16"/>
    </range>
    <range label="160 MHz" type="provider" selectable="1">
      <begin>5945 MHz</begin>
      <end>6425 MHz</end>
      <color>#b03a5b</color>
      <channels start="5945 MHz" width="160 MHz" first="15" count="3" step="32"/>
    </range>
  </channels>
</profile>
