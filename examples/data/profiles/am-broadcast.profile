<?xml version="1.0" encoding="UTF-8"?>
<profile id="am-broadcast" showInChannelList="1">
  <label lang="en">AM broadcast (long and medium wave)</label>
  <label lang="de">AM-Rundfunk (Lang- und Mittelwelle)</label>
  <description lang="en">Carriers on multiples of 9 kHz in Regions 1 and 3, named by their frequency in kilohertz. Source: Final Acts of the LF/MF broadcasting conference, Geneva 1975 (GE75).</description>
  <description lang="de">Träger auf Vielfachen von 9 kHz in den Regionen 1 und 3, benannt nach ihrer Frequenz in Kilohertz. Quelle: Schlussakte der Wellenkonferenz für Lang- und Mittelwelle, Genf 1975 (GE75).</description>
  <begin>148.5 kHz</begin>
  <end>1606.5 kHz</end>
  <channels>
    <range label="Long wave" type="provider" selectable="1">
      <begin>148.5 kHz</begin>
      <end>283.5 kHz</end>
      <color>#8e5a2b</color>
      <comment>Region 1 only. 15 carriers, 153 to 279 kHz</comment>
      <channels start="148.5 kHz" width="9 kHz" first="153" count="15" step="9"/>
    </range>
    <range label="Medium wave" type="provider" selectable="1">
      <begin>526.5 kHz</begin>
      <end>1606.5 kHz</end>
      <color>#c8893c</color>
      <comment>120 carriers, 531 to 1602 kHz</comment>
      <channels start="526.5 kHz" width="9 kHz" first="531" count="120" step="9"/>
    </range>
  </channels>
</profile>
