<?xml version="1.0" encoding="UTF-8"?>
<profile id="uhf-television" showInChannelList="1">
  <label lang="en">UHF television</label>
  <label lang="de">UHF-Fernsehen</label>
  <description lang="en">Channels 21 to 48 of 8 MHz, as they remain for television in Europe below 694 MHz; the former channels 49 to 69 are not included. Source: ITU Final Acts RRC-06 (GE06).</description>
  <description lang="de">Kanäle 21 bis 48 zu je 8 MHz, wie sie in Europa unter 694 MHz dem Fernsehen verbleiben; die früheren Kanäle 49 bis 69 fehlen. Quelle: ITU-Schlussakte RRC-06 (GE06).</description>
  <begin>470 MHz</begin>
  <end>694 MHz</end>
  <channels>
    <color>#b03a5b</color>
    <channels start="470 MHz" width="8 MHz" first="21" count="28"/>
  </channels>
</profile>
